#include "workbench/machine/models/device_tree.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "workbench/machine/models/machine.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

constexpr DEVINST kFirstNode = 1;

std::wstring InterfacePath(const std::wstring& instanceId, const GUID& classGuid,
                           const std::wstring& reference) {
  std::wstring path = L"\\\\?\\" + instanceId;
  std::replace(path.begin() + 4, path.end(), L'\\', L'#');
  path += L"#" + GuidText(classGuid);
  if (!reference.empty()) path += L"\\" + reference;
  return path;
}

}  // namespace

DeviceTree::DeviceTree(Machine& machine) : machine_(machine) {
  auto root = std::make_unique<Device>();
  root->instanceId = L"HTREE\\ROOT\\0";
  root->node = kFirstNode;
  root_ = root.get();
  devices_.push_back(std::move(root));
}

void DeviceTree::WriteRegistry(const DeviceSpec& wanted) const {
  RegistrySandbox& registry = machine_.Registry();
  const std::wstring key = EnumKeyOf(wanted.instanceId);
  registry.MakeKey(ParametersKeyOf(wanted.instanceId));
  registry.SetText(key, L"ClassGUID", GuidText(wanted.classGuid));
  registry.SetText(key, L"DeviceDesc", wanted.description);
  registry.SetTexts(key, L"HardwareID", wanted.hardwareIds);
  if (!wanted.className.empty()) registry.SetText(key, L"Class", wanted.className);
  if (!wanted.friendlyName.empty()) registry.SetText(key, L"FriendlyName", wanted.friendlyName);
  if (!wanted.driverKey.empty()) registry.SetText(key, L"Driver", wanted.driverKey);
}

Device& DeviceTree::Add(const DeviceSpec& wanted, Device* parent) {
  if (Find(wanted.instanceId) != nullptr) throw std::logic_error("device id in use");
  WriteRegistry(wanted);
  auto device = std::make_unique<Device>();
  device->instanceId = wanted.instanceId;
  device->node = kFirstNode + static_cast<DEVINST>(devices_.size());
  device->classGuid = wanted.classGuid;
  device->parent = parent == nullptr ? root_ : parent;
  device->present = wanted.present;
  device->started = wanted.started && wanted.present;
  device->parent->children.push_back(device.get());
  devices_.push_back(std::move(device));
  Record(DeviceEvent::Enumerated, *devices_.back());
  return *devices_.back();
}

DeviceInterface& DeviceTree::AddInterface(Device& device, const GUID& classGuid, std::wstring reference,
                                          DriverEndpoint* driver) {
  auto instance = std::make_unique<DeviceInterface>();
  instance->classGuid = classGuid;
  instance->path = InterfacePath(device.instanceId, classGuid, reference);
  instance->reference = std::move(reference);
  instance->driver = driver;
  device.interfaces.push_back(std::move(instance));
  return *device.interfaces.back();
}

Device* DeviceTree::Find(std::wstring_view instanceId) const {
  for (const auto& device : devices_) {
    if (!device->removed && EqualNoCase(device->instanceId, instanceId)) return device.get();
  }
  return nullptr;
}

Device* DeviceTree::FindNode(DEVINST node) const {
  if (node < kFirstNode || node - kFirstNode >= devices_.size()) return nullptr;
  return devices_[node - kFirstNode].get();
}

Device* DeviceTree::Find(DEVINST node) const {
  Device* device = FindNode(node);
  return device == nullptr || device->removed ? nullptr : device;
}

std::vector<Device*> DeviceTree::All() const {
  std::vector<Device*> all;
  for (const auto& device : devices_) {
    if (device.get() != root_ && !device->removed) all.push_back(device.get());
  }
  return all;
}

DeviceInterface* DeviceTree::FindInterface(std::wstring_view path, Device** owner) const {
  for (Device* device : All()) {
    for (const auto& instance : device->interfaces) {
      if (!EqualNoCase(instance->path, path)) continue;
      if (owner != nullptr) *owner = device;
      return instance.get();
    }
  }
  return nullptr;
}

Device* DeviceTree::FindPort(std::wstring_view kernelDevice) const {
  for (Device* device : All()) {
    if (device->port && device->port->kernelDevice == kernelDevice) return device;
  }
  return nullptr;
}

void DeviceTree::Start(Device& device) {
  if (!device.present || device.disabled || device.removed) return;
  if (device.parent != nullptr && !device.parent->started) return;
  if (!std::exchange(device.started, true)) {
    Record(DeviceEvent::Started, device);
    MakeNames(device);
  }
  for (Device* child : device.children) Start(*child);
}

void DeviceTree::MakeNames(const Device& device) {
  if (!device.port) return;
  const auto name = machine_.Registry().Text(ParametersKeyOf(device.instanceId), L"PortName");
  if (!name) return;
  // A driver's symbolic link collides with one of the same name; the one that is there stays.
  if (machine_.DosNames().Targets(*name).empty())
    machine_.DosNames().Define(*name, device.port->kernelDevice);
  machine_.Registry().SetText(kSerialCommKey, device.port->kernelDevice, *name);
}

void DeviceTree::Stop(Device& device) {
  for (Device* child : device.children) Stop(*child);
  if (!std::exchange(device.started, false)) return;
  Record(DeviceEvent::Stopped, device);
  if (!device.port) return;
  const std::wstring& kernel = device.port->kernelDevice;
  for (const std::wstring& name : machine_.DosNames().NamesOf(kernel))
    machine_.DosNames().Remove(name, kernel, true);
  machine_.Registry().DeleteValue(kSerialCommKey, kernel);
}

void DeviceTree::Disable(Device& device) {
  Record(DeviceEvent::Disabled, device);
  device.disabled = true;
  Stop(device);
}

void DeviceTree::Enable(Device& device) {
  Record(DeviceEvent::Enabled, device);
  device.disabled = false;
  Start(device);
}

void DeviceTree::Remove(Device& device) {
  for (Device* child : device.children) {
    if (!child->removed) Remove(*child);
  }
  Stop(device);
  device.removed = true;
  device.present = false;
  Record(DeviceEvent::Removed, device);
  machine_.Registry().DeleteKey(EnumKeyOf(device.instanceId));
}

void DeviceTree::Reenumerate(Device& device) {
  Record(DeviceEvent::Reenumerated, device);
}

void DeviceTree::Record(DeviceEvent event, const Device& device) {
  events_.push_back({event, device.instanceId});
}

std::vector<std::wstring> DeviceTree::EventsOf(DeviceEvent event) const {
  std::vector<std::wstring> ids;
  for (const DeviceEventRecord& record : events_) {
    if (record.event == event) ids.push_back(record.instanceId);
  }
  return ids;
}

}  // namespace workbench
