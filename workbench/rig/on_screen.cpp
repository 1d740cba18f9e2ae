#include "workbench/rig/on_screen.h"

namespace workbench {

void CenterOnScreen(HWND window) {
  RECT frame{};
  GetWindowRect(window, &frame);
  const int left = (GetSystemMetrics(SM_CXSCREEN) - (frame.right - frame.left)) / 2;
  const int top = (GetSystemMetrics(SM_CYSCREEN) - (frame.bottom - frame.top)) / 2;
  SetWindowPos(window, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void PaintNow(HWND window) {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  GdiFlush();
}

}  // namespace workbench
