// A property sheet that is up.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace workbench {

// For use on the thread of the sheet's message loop.
class OpenSheet {
 public:
  enum Tab { kDevice, kTcpIp, kAbout };  // of the advanced sheet

  explicit OpenSheet(HWND window) : window_(window) {}

  [[nodiscard]] HWND Window() const { return window_; }
  [[nodiscard]] std::wstring Caption() const;
  [[nodiscard]] std::vector<std::wstring> Tabs() const;
  // Turns to a tab and returns the page's window.
  HWND Turn(int tab) const;
  // The buttons, as the user presses them.
  void PressOk() const;
  void PressCancel() const;

 private:
  HWND window_;
};

}  // namespace workbench
