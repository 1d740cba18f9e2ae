// What single controls of a page show, beside what they should show.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "workbench/demo/expected_pages.h"

namespace workbench {

// One control of a page beside what was expected of it.
struct ControlCheck {
  int control = 0;
  std::wstring label;     // without its mnemonic and colon
  std::wstring shows;     // the text, "checked" and so on; "(hidden)", "(missing)"
  std::wstring expected;  // in the same words
  [[nodiscard]] bool Agrees() const { return shows == expected; }
};

// What a control shows: its text; "checked" or "not checked", with ", greyed"; of a combo box the selected
// entry; "(hidden)" and "(missing)" for a control that the user does not see. A page may lie behind another
// one.
[[nodiscard]] std::wstring ReadControl(HWND page, int control);
// The entries of a combo box that end in " (in use)", without that, and how many there are in all.
[[nodiscard]] std::wstring ReadNamesInUse(HWND page, int combo);

[[nodiscard]] std::vector<ControlCheck> CheckControls(HWND page,
                                                      const std::vector<ExpectedControl>& expected);
// Prints a table, whose last column says "ok" or "DIFFERS"; `source` heads the expectations. True when all
// controls show what they should.
[[nodiscard]] bool ReportChecks(const std::vector<ControlCheck>& checks, const std::wstring& source);

// Prints the page's controls that have a tip, label and value alike, each with its tip.
void PrintTips(HWND page);

}  // namespace workbench
