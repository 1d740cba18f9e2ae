// What one control of a page ought to show.
#pragma once

#include <string>

namespace workbench {

struct ExpectedControl {
  int control = 0;
  std::wstring shows;  // in the words of ReadControl (control_check.h)
};

}  // namespace workbench
