#include "workbench/machine/models/device_sets.h"

#include "workbench/machine/machine.h"

namespace workbench {

InstallParameters::InstallParameters() {
  install.cbSize = sizeof install;
  install.Flags = kFlagOfOthers;
}

HDEVINFO DeviceSets::Create(std::unique_ptr<DeviceSet> set) {
  const std::uint64_t handle = nextHandle_;
  nextHandle_ += 0x10;
  sets_.emplace(handle, std::move(set));
  return reinterpret_cast<HDEVINFO>(handle);
}

DeviceSet* DeviceSets::Find(HDEVINFO handle) {
  const auto found = sets_.find(reinterpret_cast<std::uint64_t>(handle));
  if (found != sets_.end()) return found->second.get();
  machine_.Calls().Violate("not a device information set");
  SetLastError(ERROR_INVALID_HANDLE);
  return nullptr;
}

bool DeviceSets::Destroy(HDEVINFO handle) {
  if (Find(handle) == nullptr) return false;
  sets_.erase(reinterpret_cast<std::uint64_t>(handle));
  return true;
}

SetElement& DeviceSets::Put(DeviceSet& set, Device& device) {
  for (const auto& element : set.elements) {
    if (element->device == &device) return *element;
  }
  set.elements.push_back(std::make_unique<SetElement>());
  set.elements.back()->device = &device;
  return *set.elements.back();
}

SetElement* DeviceSets::FindElement(DeviceSet& set, const SP_DEVINFO_DATA* data) {
  if (data == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  if (data->cbSize != sizeof *data) {
    machine_.Calls().Violate("SP_DEVINFO_DATA of the wrong size");
    SetLastError(ERROR_INVALID_USER_BUFFER);
    return nullptr;
  }
  for (const auto& element : set.elements) {
    if (reinterpret_cast<ULONG_PTR>(element.get()) != data->Reserved) continue;
    if (element->device->node != data->DevInst) break;
    if (!element->device->removed) return element.get();
    SetLastError(ERROR_NO_SUCH_DEVINST);
    return nullptr;
  }
  machine_.Calls().Violate("an element that is not of this set");
  SetLastError(ERROR_INVALID_PARAMETER);
  return nullptr;
}

void DeviceSets::Fill(const SetElement& element, SP_DEVINFO_DATA& data) {
  data.ClassGuid = element.device->classGuid;
  data.DevInst = element.device->node;
  data.Reserved = reinterpret_cast<ULONG_PTR>(&element);
}

DeviceElement::DeviceElement(Machine& machine, Device& device) : machine_(machine) {
  auto set = std::make_unique<DeviceSet>();
  const SetElement& element = machine.Sets().Put(*set, device);
  data_.cbSize = sizeof data_;
  DeviceSets::Fill(element, data_);
  set_ = machine.Sets().Create(std::move(set));
}

DeviceElement::~DeviceElement() {
  machine_.Sets().Destroy(set_);
}

}  // namespace workbench
