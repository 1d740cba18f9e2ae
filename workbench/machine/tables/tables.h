// The tables of redirected functions, one per subject.
#pragma once

#include <mutex>
#include <span>

#include "workbench/machine/gate/function_row.h"
#include "workbench/machine/gate/thunk.h"
#include "workbench/machine/models/machine.h"

namespace workbench {

extern const std::span<const FunctionRow> kDeviceTreeRows;      // cfgmgr32
extern const std::span<const FunctionRow> kDeviceSetRows;       // setupapi: sets, elements, interfaces
extern const std::span<const FunctionRow> kDevicePropertyRows;  // setupapi: keys, properties, class installer
extern const std::span<const FunctionRow> kComNameRows;         // msports, DOS devices
extern const std::span<const FunctionRow> kFileRows;            // files, drivers, COM ports
extern const std::span<const FunctionRow> kHostRows;            // processes, version, driver update
extern const std::span<const FunctionRow> kScreenRows;          // message boxes, shell, help
extern const std::span<const FunctionRow> kModuleRows;          // run-time look-ups
extern const std::span<const FunctionRow> kKernelRows;          // real: kernel32, memory
extern const std::span<const FunctionRow> kRegistryRows;        // real: advapi32, oleaut32
extern const std::span<const FunctionRow> kInternetRows;        // real: wininet
extern const std::span<const FunctionRow> kWindowRows;          // real: user32, gdi32, comctl32

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

}  // namespace workbench
