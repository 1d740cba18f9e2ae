// The advanced sheet of a port, driven by messages while it is up.
#pragma once

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "workbench/drivers/port_driver.h"
#include "workbench/machine/machine.h"

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
// What F1 on a control sends.
void AskForHelp(HWND page, int control);

// What the process holds: kernel handles, top-level windows of this thread, and bytes on all heaps.
struct Footprint {
  DWORD handles = 0;
  std::size_t windows = 0;
  std::size_t heapBytes = 0;
};
[[nodiscard]] Footprint TakeFootprint();

// A host with a device server of three ports, COM5 to COM7, and the pages' DLL loaded on it.
class AdvancedRig : public testing::Test {
 protected:
  using Step = std::function<void(const OpenSheet&)>;
  struct Outcome {
    INT_PTR result = 0;       // what the sheet's owner is told: 1 when something was saved
    bool stayedOpen = false;  // the steps had not closed it: it was cancelled
  };

  AdvancedRig();
  // Whatever a test does: nothing stays open, no interface was misused, every question had an answer.
  ~AdvancedRig() override;

  // Shows the port's sheet and runs `step` when it is up; a sheet that is still open then is cancelled.
  Outcome Run(const Step& step) { return RunOn(1, step); }
  Outcome RunOn(unsigned port, const Step& step);
  // The same with a sheet around the RS422/485 page alone.
  Outcome RunRs422485(const Step& step);

  // The same with a sheet of the same three templates and no code of the product's behind them.
  Outcome RunBare(const Step& step);
  // The duplex mode that the port's owner takes over after a save.
  [[nodiscard]] std::uint32_t DuplexModeOf(unsigned port);

  [[nodiscard]] workbench::Device& Port() { return *server_.ports[1]; }
  [[nodiscard]] workbench::PortDriver& Driver() { return drivers_[1]; }
  [[nodiscard]] workbench::ParameterValues& PortSet() { return Driver().Current(workbench::kPortSet); }
  [[nodiscard]] workbench::ParameterValues& BusSet() { return Driver().Current(workbench::kBusSet); }
  [[nodiscard]] const std::vector<workbench::MessageBoxRecord>& Boxes() {
    return machine_.Screen().messageBoxes;
  }
  // "text|caption|style" of the boxes so far.
  [[nodiscard]] std::vector<std::wstring> BoxTexts();
  // What was written to the drivers, as differences from the set that was there before: one entry for each
  // write, "" for one that changed nothing.
  [[nodiscard]] std::vector<std::string> Written();
  [[nodiscard]] std::string LeftOpen();

  workbench::PortDriver drivers_[3];
  workbench::Machine machine_;
  workbench::DeviceServer server_ = workbench::AddDeviceServer(
      machine_, {.comNumbers = {5, 6, 7}, .driver = [this](unsigned index) { return &drivers_[index]; }});
  workbench::Dll dll_{machine_, ProbePath()};

 private:
  [[nodiscard]] static std::wstring ProbePath();
  Outcome Drive(const Step& step, const std::function<INT_PTR()>& show);

  workbench::ParameterValues before_[2];
};
