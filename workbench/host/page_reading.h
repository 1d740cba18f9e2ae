// What the controls of a port's page show, and whether that is what they ought to show.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "workbench/host/port_expectation.h"

namespace workbench {

// One control of the page beside what was expected of it.
struct ControlCheck {
  int control = 0;
  std::wstring label;     // without its mnemonic and colon
  std::wstring shows;     // the text, "checked" and so on; "(hidden)", "(missing)"
  std::wstring expected;  // in the same words
  [[nodiscard]] bool Agrees() const { return shows == expected; }
};

// Reads the eight values and the two check boxes of a page window.
[[nodiscard]] std::vector<ControlCheck> CheckPage(HWND page, const PageExpectation& expectation);

// Whether all of them show what they ought to.
[[nodiscard]] bool AllAgree(const std::vector<ControlCheck>& checks);

// A table for people; the last column says "ok" or "DIFFERS". `source` heads the expectations.
[[nodiscard]] std::wstring FormatChecks(const std::vector<ControlCheck>& checks, const std::wstring& source);

}  // namespace workbench
