// The devices of the simulated host and their tree.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/machine/models/driver_endpoint.h"

namespace workbench {

class Machine;

// One instance of a device interface.
struct DeviceInterface {
  GUID classGuid{};
  std::wstring reference{};          // reference string, the part of the path behind the last backslash
  std::wstring path{};               // filled in by DeviceTree::AddInterface
  bool active = true;                // reported with DIGCF_PRESENT
  DriverEndpoint* driver = nullptr;  // null: opens fail with ERROR_FILE_NOT_FOUND
};

// The serial port of a port device.
struct SerialPort {
  std::wstring kernelDevice{};  // for example "\Device\KdPort0"
  bool openElsewhere = false;   // held open by another application: opens fail with ERROR_ACCESS_DENIED
  bool openHere = false;        // the DLL has it open now
};

// One device. Owned by the DeviceTree; the address stays good for the tree's life, also after removal.
// Properties (friendly name, driver key name, ...) and "Device Parameters" are in the registry only.
struct Device {
  std::wstring instanceId{};
  DEVINST node = 0;
  GUID classGuid{};
  Device* parent = nullptr;
  std::vector<Device*> children{};  // in enumeration order, removed ones included
  bool present = true;              // false: known to the registry, not plugged in
  bool started = true;              // DN_STARTED
  bool disabled = false;            // by a property change
  bool removed = false;             // by DIF_REMOVE; the node lingers until the bus enumerates again
  bool changePending = false;       // DI_FLAGSEX_PROPCHANGE_PENDING was set
  std::vector<std::unique_ptr<DeviceInterface>> interfaces{};
  std::optional<SerialPort> port{};
};

// What a new device is made of. Registry values follow from it.
struct DeviceSpec {
  std::wstring instanceId{};
  GUID classGuid{};
  std::wstring className{};
  std::wstring description{};
  std::wstring friendlyName{};  // empty: no such property
  std::wstring driverKey{};     // SPDRP_DRIVER, for example "{4d36e978-...}\0003"; empty: no such property
  std::vector<std::wstring> hardwareIds{};
  bool present = true;
  bool started = true;
};

// Events of devices, in order: what the platform was made to do, whichever call did it.
enum class DeviceEvent { Disabled, Enabled, Removed, Enumerated, Reenumerated, Stopped, Started };
struct DeviceEventRecord {
  DeviceEvent event{};
  std::wstring instanceId{};  // the root's id for a re-enumeration of everything
};

// The tree. Not synchronised: hold Machine::StateLock when the DLL may run on another thread.
class DeviceTree {
 public:
  explicit DeviceTree(Machine& machine);

  // Adds a device below `parent` (null: the root), with its registry keys; an id that was removed before
  // is a new device. The id must not be in use.
  Device& Add(const DeviceSpec& wanted, Device* parent = nullptr);
  DeviceInterface& AddInterface(Device& device, const GUID& classGuid, std::wstring reference,
                                DriverEndpoint* driver);
  // A device that is there, by id (case-insensitive) or node; null when there is none.
  [[nodiscard]] Device* Find(std::wstring_view instanceId) const;
  [[nodiscard]] Device* Find(DEVINST node) const;
  // As Find, also for a removed device whose node lingers.
  [[nodiscard]] Device* FindNode(DEVINST node) const;
  [[nodiscard]] Device& Root() const { return *root_; }
  // All devices that are there, in the order of their addition, without the root.
  [[nodiscard]] std::vector<Device*> All() const;
  [[nodiscard]] DeviceInterface* FindInterface(std::wstring_view path, Device** owner = nullptr) const;
  [[nodiscard]] Device* FindPort(std::wstring_view kernelDevice) const;

  // Start and stop as the driver sees them: a port's driver makes and deletes its DOS device and its
  // SERIALCOMM value by its "PortName"; children follow their parent. A device that is started already keeps
  // the names it has, and one whose parent is not started does not start.
  void Start(Device& device);
  void Stop(Device& device);
  void Disable(Device& device);
  void Enable(Device& device);
  // Takes the device and its children out of the tree, their registry keys with them.
  void Remove(Device& device);
  void Reenumerate(Device& device);

  [[nodiscard]] const std::vector<DeviceEventRecord>& Events() const { return events_; }
  // Ids of the devices that had this event, in order.
  [[nodiscard]] std::vector<std::wstring> EventsOf(DeviceEvent event) const;

 private:
  void Record(DeviceEvent event, const Device& device);
  void WriteRegistry(const DeviceSpec& wanted) const;
  void MakeNames(const Device& device);

  Machine& machine_;
  std::vector<std::unique_ptr<Device>> devices_;
  Device* root_ = nullptr;
  std::vector<DeviceEventRecord> events_;
};

}  // namespace workbench
