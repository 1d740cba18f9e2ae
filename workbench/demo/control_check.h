// What single controls of a page show, beside what they ought to show.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "workbench/demo/expected_control.h"

namespace workbench {

// One control of a page beside what was expected of it.
struct ControlCheck {
  int control = 0;        // 0: not a control but, for example, the caption
  std::wstring label;     // without its mnemonic and colon
  std::wstring shows;     // the text, "checked" and so on; "(hidden)", "(missing)"
  std::wstring expected;  // in the same words
  [[nodiscard]] bool Agrees() const { return shows == expected; }
};

// What a control shows: its text; "checked" or "not checked", with ", greyed"; of a combo box the selected
// entry.
// "(hidden)" and "(missing)" for a control that the user does not see. A page may lie behind another one.
[[nodiscard]] std::wstring ReadControl(HWND page, int control);
// The words of a check box.
[[nodiscard]] std::wstring CheckBoxInWords(bool checked, bool enabled = true);
// The entries of a combo box that end in " (in use)", without that, and how many there are in all.
[[nodiscard]] std::wstring ReadNumbersInUse(HWND page, int combo);
[[nodiscard]] std::wstring NumbersInUseInWords(const std::vector<std::wstring>& names, std::size_t entries);

// The words of a label, without its mnemonic and its colon.
[[nodiscard]] std::wstring LabelText(HWND label);
// The label that a control goes by: a button's own text or, without one, the text that stands before the
// control, which is what a screen reader reads out.
[[nodiscard]] std::wstring LabelOf(HWND page, int control);

[[nodiscard]] std::vector<ControlCheck> CheckControls(HWND page,
                                                      const std::vector<ExpectedControl>& expected);
// Whether all of them show what they ought to.
[[nodiscard]] bool AllAgree(const std::vector<ControlCheck>& checks);
// A table for people; the last column says "ok" or "DIFFERS". `source` heads the expectations.
[[nodiscard]] std::wstring FormatChecks(const std::vector<ControlCheck>& checks, const std::wstring& source);

}  // namespace workbench
