// What the controls of a port's page show, and whether that is what they ought to show.
#pragma once

#include "workbench/demo/control_check.h"
#include "workbench/demo/port_expectation.h"

namespace workbench {

// Reads the eight values and the two check boxes of a page window.
[[nodiscard]] std::vector<ControlCheck> CheckPage(HWND page, const PageExpectation& expectation);

}  // namespace workbench
