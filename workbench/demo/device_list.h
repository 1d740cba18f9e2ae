// The devices of a machine as Device Manager lists them: by connection.
#pragma once

#include <string>
#include <vector>

#include "workbench/machine/machine.h"

namespace workbench {

// One line of the list.
struct ListedDevice {
  Device* device = nullptr;
  std::size_t depth = 0;  // 0: below the computer itself
  std::wstring name;
};

// What a device is called in the list: its friendly name, else its description.
[[nodiscard]] std::wstring ListedName(Machine& machine, const Device& device);
// Every device that is there, each behind its parent and before its own children.
[[nodiscard]] std::vector<ListedDevice> ListDevices(Machine& machine);
// The computer and the list below it, for people: names indented by depth, and instance ids.
[[nodiscard]] std::wstring FormatDevices(const std::vector<ListedDevice>& devices);

// What the computer itself is called in the list.
inline constexpr wchar_t kComputer[] = L"Simulated host";

}  // namespace workbench
