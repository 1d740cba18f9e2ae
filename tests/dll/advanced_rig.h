// The advanced sheet of a port, opened from the port's page and driven by messages while it is up.
#pragma once

#include "port_page_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
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

// A host whose port COM7 has its page open; the page's button opens the sheet.
class AdvancedRig : public testing::Test, protected PortPageRig {
 protected:
  using Step = std::function<void(const OpenSheet&)>;
  struct Outcome {
    INT_PTR result = 0;       // what the sheet's owner is told: 1 when something was saved
    bool stayedOpen = false;  // the steps had not closed it: it was cancelled
  };

  AdvancedRig();
  // Whatever a test does: nothing stays open, no interface was misused, every question had an answer.
  ~AdvancedRig() override;

  // The page of a port, opened by its first use. What was written and asked until then is forgotten.
  PortSheet& PageOf(unsigned port = 0);

  // Opens the port's sheet and runs `step` when it is up; a sheet that is still open then is cancelled.
  Outcome Run(const Step& step) { return RunOn(0, step); }
  Outcome RunOn(unsigned port, const Step& step);
  // The same with the sheet that `show` puts up, whose result it returns.
  Outcome Drive(const Step& step, const std::function<INT_PTR()>& show);

  // "text|caption|style" of the boxes so far.
  [[nodiscard]] std::vector<std::wstring> BoxTexts();
  // What was written to the drivers of COM7, as differences from the set that was there before: one entry for
  // each write, "" for one that changed nothing.
  [[nodiscard]] std::vector<std::string> Written();
  [[nodiscard]] std::string LeftOpen();

  std::optional<PortSheet> pages_[2];

 private:
  workbench::ParameterValues before_[2];
};
