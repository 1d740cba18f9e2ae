// Property sheets driven by messages while they are up.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

// A property sheet that is up, on the thread of its message loop.
class OpenSheet {
 public:
  enum Tab { kDevice, kTcpIp, kAbout };

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

// Controls of a page.
[[nodiscard]] std::wstring TextOf(HWND page, int control);
void Enter(HWND page, int control, const std::wstring& text);
[[nodiscard]] bool IsChecked(HWND page, int control);
void Click(HWND page, int control);
// Entries of a combo box, its selected one ("" when there is none), and the choice of one by its text.
[[nodiscard]] std::vector<std::wstring> EntriesOf(HWND page, int combo);
[[nodiscard]] std::wstring SelectedOf(HWND page, int combo);
void Select(HWND page, int combo, const std::wstring& entry);

// Drives one modal sheet: a timer of the sheet's thread ticks in its message loop, and the first tick that
// finds the sheet runs `step`, which outlives the driver. A sheet that is still open then is cancelled.
// Sheets may nest; the newest driver is served.
class SheetDriver {
 public:
  explicit SheetDriver(const std::function<void(const OpenSheet&)>& step);
  ~SheetDriver();
  SheetDriver(const SheetDriver&) = delete;
  SheetDriver& operator=(const SheetDriver&) = delete;

  [[nodiscard]] bool HasRun() const { return hasRun_; }
  [[nodiscard]] bool WasCancelled() const { return wasCancelled_; }

 private:
  static void CALLBACK Tick(HWND window, UINT message, UINT_PTR timer, DWORD time);
  void Serve();

  static inline SheetDriver* current_ = nullptr;
  const std::function<void(const OpenSheet&)>& step_;
  SheetDriver* outer_;
  std::vector<HWND> known_;  // sheets that were up before
  UINT_PTR timer_ = 0;
  bool busy_ = false;
  bool hasRun_ = false;
  bool wasCancelled_ = false;
};
