#include "workbench/demo/device_list.h"

#include <algorithm>

namespace workbench {
namespace {

void AddChildren(Machine& machine, const Device& parent, std::size_t depth, std::vector<ListedDevice>& list) {
  for (Device* child : parent.children) {
    if (child->removed) continue;
    list.push_back({child, depth, ListedName(machine, *child)});
    AddChildren(machine, *child, depth + 1, list);
  }
}

std::wstring Indented(const ListedDevice& listed) {
  return std::wstring(2 * (listed.depth + 1), L' ') + listed.name;
}

}  // namespace

std::wstring ListedName(Machine& machine, const Device& device) {
  const std::wstring key = EnumKeyOf(device.instanceId);
  return machine.Registry()
      .Text(key, L"FriendlyName")
      .value_or(machine.Registry().Text(key, L"DeviceDesc").value_or(device.instanceId));
}

std::vector<ListedDevice> ListDevices(Machine& machine) {
  std::vector<ListedDevice> list;
  AddChildren(machine, machine.Devices().Root(), 0, list);
  return list;
}

std::wstring FormatDevices(const std::vector<ListedDevice>& devices) {
  std::size_t width = 0;
  for (const ListedDevice& listed : devices) width = std::max(width, Indented(listed).size());
  std::wstring text = std::wstring(kComputer) + L"\n";
  for (const ListedDevice& listed : devices) {
    const std::wstring name = Indented(listed);
    text += name + std::wstring(width - name.size() + 2, L' ') + listed.device->instanceId + L"\n";
  }
  return text;
}

}  // namespace workbench
