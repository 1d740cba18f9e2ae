// Pictures of windows.
#pragma once

#include <windows.h>

#include <string>

namespace workbench {

// Saves a window with everything in it as PNG, 24 bits per pixel. The window should be on the screen and
// uncovered. Throws std::runtime_error when there is no picture or it cannot be written.
void SavePicture(HWND window, const std::wstring& fileName);

}  // namespace workbench
