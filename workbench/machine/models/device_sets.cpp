#include "workbench/machine/models/device_sets.h"

#include <algorithm>

#include "workbench/machine/models/machine.h"

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
  return machine_.Calls().Misused<DeviceSet*>("not a device information set", ERROR_INVALID_HANDLE);
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

SetElement* DeviceSets::FindElement(HDEVINFO handle, const SP_DEVINFO_DATA* data) {
  const DeviceSet* set = Find(handle);
  if (set == nullptr) return nullptr;
  if (data == nullptr) return FailWith<SetElement*>(ERROR_INVALID_PARAMETER);
  if (!machine_.Calls().HasSize(*data, "SP_DEVINFO_DATA")) return nullptr;
  const auto found = std::ranges::find_if(set->elements, [&](const auto& one) {
    return reinterpret_cast<ULONG_PTR>(one.get()) == data->Reserved && one->device->node == data->DevInst;
  });
  if (found == set->elements.end())
    return machine_.Calls().Misused<SetElement*>("an element that is not of this set",
                                                 ERROR_INVALID_PARAMETER);
  if ((*found)->device->removed) return FailWith<SetElement*>(ERROR_NO_SUCH_DEVINST);
  machine_.Calls().Note((*found)->device->instanceId);
  return found->get();
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
