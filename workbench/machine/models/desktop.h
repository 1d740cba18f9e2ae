// What the DLL shows to the user and starts for him.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace workbench {

struct MessageBoxRecord {
  HWND owner = nullptr;
  std::wstring text{};
  std::wstring caption{};
  UINT style = 0;
  int answer = 0;
};

struct ShellRecord {
  HWND owner = nullptr;
  std::wstring operation{}, file{}, parameters{}, directory{};
  int show = 0;
};

struct HelpRecord {
  HWND owner = nullptr;
  std::wstring topic{};
  UINT command = 0;
  std::vector<DWORD> ids{};  // the control/help id pairs of HH_TP_HELP_WM_HELP, (0, 0) included
};

// Message boxes, sounds, the shell and help: recorded, answered by script or really shown.
// Filled in on the DLL's thread; read it when the DLL is back.
class Desktop {
 public:
  // Answers for the next message boxes, in order. A box beyond the script gets IDOK where that is its only
  // button, else IDNO.
  void Answer(int answer) { answers_.push_back(answer); }
  // Called while a box is up, in place of a script; its result is the answer.
  void AnswerBy(std::function<int(const MessageBoxRecord&)> answerer) { answerer_ = std::move(answerer); }
  // Boxes are really shown, for a person at the screen (recorded as well).
  void ShowMessageBoxes(bool show) { show_ = show; }
  [[nodiscard]] std::size_t PendingAnswers() const { return answers_.size(); }

  std::vector<MessageBoxRecord> messageBoxes{};
  std::vector<UINT> beeps{};
  std::vector<ShellRecord> shellCalls{};
  std::vector<HelpRecord> helpCalls{};
  std::vector<UINT> broadcasts{};
  bool htmlHelpInstalled = true;  // false: hhctrl.ocx cannot be loaded

  // For the simulated MessageBoxW.
  int Show(HWND owner, const wchar_t* text, const wchar_t* caption, UINT style);

 private:
  std::deque<int> answers_;
  std::function<int(const MessageBoxRecord&)> answerer_;
  bool show_ = false;
};

// The rest of the system: its version, its processes, its driver updates.
struct DriverUpdateRecord {
  HWND owner = nullptr;
  std::wstring hardwareId{}, infPath{};
  DWORD flags = 0;
};
struct SystemState {
  DWORD majorVersion = 10;
  DWORD minorVersion = 0;
  DWORD buildNumber = 19045;

  std::vector<std::wstring> processes{};  // the programs that were started

  DWORD updateError = ERROR_SUCCESS;  // when set, UpdateDriverForPlugAndPlayDevicesW fails with it
  bool updateNeedsReboot = false;
  std::vector<DriverUpdateRecord> driverUpdates{};
};

}  // namespace workbench
