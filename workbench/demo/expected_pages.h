// What the pages of the sample rig's ports show, and what opening them changes.
#pragma once

#include <string>
#include <vector>

namespace workbench {

// What one control shows, in the words of ReadControl (control_check.h).
struct ExpectedControl {
  int control = 0;
  std::wstring shows;
};

// The page of the port with this number, from 1.
[[nodiscard]] std::vector<ExpectedControl> ExpectedPortPage(unsigned port, bool offline);
// What the drivers hold differently once the page has been open, as FormatChanges says it.
[[nodiscard]] std::wstring ExpectedChanges(unsigned port, bool offline);
// A tab of the port's advanced sheet: OpenSheet::kDevice and so on.
[[nodiscard]] std::vector<ExpectedControl> ExpectedAdvancedPage(unsigned port, int tab);
// The names that the port's list marks, and the list's length.
[[nodiscard]] std::wstring ExpectedNamesInUse(unsigned port);

}  // namespace workbench
