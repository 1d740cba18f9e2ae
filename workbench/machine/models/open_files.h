// Files that the DLL has open on drivers and COM ports.
#pragma once

#include <windows.h>

#include <cstdint>
#include <map>

#include "workbench/machine/models/device_tree.h"

namespace workbench {

class Machine;

// Handles on simulated objects. They are real event handles, so that they never meet another handle and
// waiting on them works.
class OpenFiles {
 public:
  explicit OpenFiles(Machine& machine) : machine_(machine) {}
  ~OpenFiles();

  // Opens what `path` names; INVALID_HANDLE_VALUE with the last error set on failure. `handled` tells
  // whether the path belongs to the machine at all.
  [[nodiscard]] HANDLE Open(const DriverOpen& open, bool& handled);
  [[nodiscard]] bool Owns(HANDLE handle) const;
  bool Control(HANDLE handle, const DriverRequest& request, DWORD* returned);
  bool Close(HANDLE handle);

 private:
  struct OpenFile {
    DriverEndpoint* driver = nullptr;  // null: a COM port
    std::uint64_t session = 0;
    Device* port = nullptr;
  };
  [[nodiscard]] HANDLE OpenInterface(const DriverOpen& open, const DeviceInterface& instance,
                                     const Device& owner);
  [[nodiscard]] HANDLE OpenComPort(std::wstring_view name);
  [[nodiscard]] HANDLE Keep(const OpenFile& file);

  Machine& machine_;
  std::map<HANDLE, OpenFile> files_;
  std::uint64_t nextSession_ = 1;
};

}  // namespace workbench
