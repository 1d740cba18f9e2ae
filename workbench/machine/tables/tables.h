// The tables of redirected functions, one per subject.
#pragma once

#include <mutex>
#include <span>

#include "workbench/machine/gate/function_row.h"
#include "workbench/machine/gate/thunk.h"
#include "workbench/machine/machine.h"

namespace workbench {

[[nodiscard]] std::span<const FunctionRow> DeviceTreeRows();  // cfgmgr32
[[nodiscard]] std::span<const FunctionRow> DeviceSetRows();   // setupapi: sets, elements, interfaces
[[nodiscard]] std::span<const FunctionRow>
DevicePropertyRows();                                       // setupapi: keys, properties, class installer
[[nodiscard]] std::span<const FunctionRow> ComNameRows();   // msports, DOS devices
[[nodiscard]] std::span<const FunctionRow> FileRows();      // files, drivers, COM ports
[[nodiscard]] std::span<const FunctionRow> HostRows();      // processes, version, driver update
[[nodiscard]] std::span<const FunctionRow> ScreenRows();    // message boxes, shell, help
[[nodiscard]] std::span<const FunctionRow> ModuleRows();    // run-time look-ups
[[nodiscard]] std::span<const FunctionRow> KernelRows();    // real: kernel32, memory
[[nodiscard]] std::span<const FunctionRow> RegistryRows();  // real: advapi32, oleaut32
[[nodiscard]] std::span<const FunctionRow> InternetRows();  // real: wininet
[[nodiscard]] std::span<const FunctionRow> WindowRows();    // real: user32, gdi32, comctl32

// The machine and its lock, for the length of a simulated function. It runs only while there is a
// machine: the gate's caller is a DLL whose Dll object a machine outlives.
class MachineLock {
 public:
  MachineLock() : machine_(*Machine::Current()), guard_(machine_.StateLock()) {}
  Machine* operator->() const { return &machine_; }
  Machine& operator*() const { return machine_; }

 private:
  Machine& machine_;
  std::scoped_lock<std::recursive_mutex> guard_;
};

// Whether a structure that the caller gives says its right size. Otherwise that is reported, and the last
// error set.
template <class Structure>
bool HasSize(const MachineLock& machine, const Structure& given, const char* what) {
  if (given.cbSize == sizeof given) return true;
  machine->Calls().Violate(std::string(what) + " of the wrong size " + std::to_string(given.cbSize));
  SetLastError(ERROR_INVALID_USER_BUFFER);
  return false;
}

// Sets the last error and answers FALSE.
inline BOOL FailWith(DWORD error) {
  SetLastError(error);
  return FALSE;
}

}  // namespace workbench
