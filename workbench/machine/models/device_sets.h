// Device information sets and their elements.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "workbench/machine/models/device_tree.h"

namespace workbench {

class Machine;

// Every device's install parameters have it from the start, as if another installer had set it.
inline constexpr DWORD kFlagOfOthers = DI_NOBROWSE;

// Parameters that both an element and a whole set carry.
struct InstallParameters {
  SP_DEVINSTALL_PARAMS_W install{};
  std::vector<std::byte> classInstall{};  // SP_CLASSINSTALL_HEADER and what follows; empty: none

  InstallParameters();
};

// One device in a set.
struct SetElement {
  Device* device = nullptr;
  InstallParameters parameters;
};

// One set.
struct DeviceSet {
  std::optional<GUID> classGuid{};       // devices of one setup class only
  std::optional<GUID> interfaceClass{};  // made for device interfaces of this class
  bool onlyPresent = false;
  std::vector<std::unique_ptr<SetElement>> elements{};
  InstallParameters parameters;
};

// All sets of the machine. A handle that was never given out, or was destroyed, is a violation; no handle
// is used twice.
class DeviceSets {
 public:
  explicit DeviceSets(Machine& machine) : machine_(machine) {}

  HDEVINFO Create(std::unique_ptr<DeviceSet> set);
  // Null, last error set and a violation recorded for a handle that is not a set.
  [[nodiscard]] DeviceSet* Find(HDEVINFO handle);
  bool Destroy(HDEVINFO handle);
  // The element of the device, added when the set has none yet.
  SetElement& Put(DeviceSet& set, Device& device);
  // The element that `data` names in a set, its id noted in the log, or null with last error set; checks the
  // handle, the size, the set and the device.
  [[nodiscard]] SetElement* FindElement(HDEVINFO handle, const SP_DEVINFO_DATA* data);
  static void Fill(const SetElement& element, SP_DEVINFO_DATA& data);

 private:
  Machine& machine_;
  std::map<std::uint64_t, std::unique_ptr<DeviceSet>> sets_;
  std::uint64_t nextHandle_ = 0x5E700010;
};

// A set with one device in it, as the device installer or Device Manager hands it to the DLL. Destroys
// the set at the end, which is a violation when the DLL has done so before.
class DeviceElement {
 public:
  DeviceElement(Machine& machine, Device& device);
  ~DeviceElement();
  DeviceElement(const DeviceElement&) = delete;
  DeviceElement& operator=(const DeviceElement&) = delete;

  [[nodiscard]] HDEVINFO Set() const { return set_; }
  [[nodiscard]] SP_DEVINFO_DATA* Data() { return &data_; }

 private:
  Machine& machine_;
  HDEVINFO set_;
  SP_DEVINFO_DATA data_{};
};

}  // namespace workbench
