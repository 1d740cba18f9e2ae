// Windows on the screen.
#pragma once

#include <windows.h>

namespace workbench {

void CenterOnScreen(HWND window);

// Handles the messages that the thread has waiting and paints the window, so that the screen shows it as it
// is.
void PaintNow(HWND window);

}  // namespace workbench
