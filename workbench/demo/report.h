// What a rig has, and what happened on it, for people.
#pragma once

#include <string>
#include <vector>

#include "workbench/rig/rig.h"

namespace workbench {

// What the computer itself is called.
inline constexpr wchar_t kComputer[] = L"Simulated host";

// One line of the devices by connection, as Device Manager lists them.
struct ListedDevice {
  Device* device = nullptr;
  std::size_t depth = 0;  // 0: below the computer itself
  std::wstring name;      // its friendly name, else its description
};
// Every device that is there, each behind its parent and before its own children.
[[nodiscard]] std::vector<ListedDevice> ListDevices(Machine& machine);
// The computer and the list below it: names indented by depth, and instance ids.
[[nodiscard]] std::wstring FormatDevices(Machine& machine);

// The caption that Device Manager gives the device's sheet: its friendly name and "Properties".
[[nodiscard]] std::wstring CaptionOf(Machine& machine, const Device& device);

// Writes UTF-8 to the standard output.
void Print(const std::wstring& text);
// Prints what happened and, where it is not the same, what should have. True when it is.
[[nodiscard]] bool PrintBeside(const std::wstring& happened, const std::wstring& expected);

// One line per message box: caption, icon, text, answer.
[[nodiscard]] std::wstring FormatMessageBoxes(const std::vector<MessageBoxRecord>& boxes);

// The values of the drivers at one moment: of each port the virtual COM port's set and the network bus's set.
using DriverValues = std::vector<ParameterValues>;
[[nodiscard]] DriverValues ValuesOf(Rig& rig);
// One line per parameter that differs.
[[nodiscard]] std::wstring FormatChanges(const DriverValues& before, const DriverValues& after);

// What the DLL did wrong and left open, one line each; "" when nothing.
[[nodiscard]] std::wstring FormatFaults(const Rig& rig);
// Unloads the DLL and prints what it did wrong; true when there is nothing.
[[nodiscard]] bool EndsWell(Rig& rig);

}  // namespace workbench
