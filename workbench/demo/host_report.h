// What happened on the sample host, for people.
#pragma once

#include <string>
#include <vector>

#include "workbench/rig/sample_host.h"

namespace workbench {

// The caption that Device Manager gives the device's sheet: its friendly name and "Properties".
[[nodiscard]] std::wstring CaptionOf(Machine& machine, const Device& device);

// One line per message box: caption, icon, text, answer.
[[nodiscard]] std::wstring FormatMessageBoxes(const std::vector<MessageBoxRecord>& boxes);

// The values of the drivers at one moment: of each port the virtual COM port's set and the network bus's set.
using DriverValues = std::vector<ParameterValues>;
[[nodiscard]] DriverValues ValuesOf(SampleHost& host);
// One line per parameter that differs.
[[nodiscard]] std::wstring FormatChanges(const DriverValues& before, const DriverValues& after);

// What the DLL did wrong so far: misused interfaces, handles left open, requests that a driver refused.
[[nodiscard]] std::vector<std::wstring> ViolationsOf(SampleHost& host);
// Prints them; true when there is none.
[[nodiscard]] bool ReportViolations(SampleHost& host);

}  // namespace workbench
