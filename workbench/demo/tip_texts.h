// What the tips of a page say.
#pragma once

#include <windows.h>

#include <string>

namespace workbench {

// A table for people of the page's controls that have a tip, label and value alike, each with the text that
// its tip control shows; line feeds as blanks.
[[nodiscard]] std::wstring FormatTips(HWND page);

}  // namespace workbench
