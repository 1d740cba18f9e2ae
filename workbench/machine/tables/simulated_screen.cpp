// What the user sees and hears, and what is started for him.
#include <windows.h>

#include <dbt.h>
#include <htmlhelp.h>
#include <shellapi.h>

#include "workbench/machine/tables/tables.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

std::wstring TextOrEmpty(const wchar_t* text) {
  return text == nullptr ? L"" : text;
}

// Without the state lock: a box that is really shown, or its answerer, lets other messages in.
int WINAPI ShowBox(HWND owner, const wchar_t* text, const wchar_t* caption, UINT style) {
  return Machine::Current()->Screen().Show(owner, text, caption, style);
}

BOOL WINAPI Beep(UINT type) {
  MachineLock machine;
  machine->Screen().beeps.push_back(type);
  return TRUE;
}

HINSTANCE WINAPI Execute(HWND owner, const wchar_t* operation, const wchar_t* file, const wchar_t* parameters,
                         const wchar_t* directory, int show) {
  MachineLock machine;
  machine->Screen().shellCalls.push_back({.owner = owner,
                                          .operation = TextOrEmpty(operation),
                                          .file = TextOrEmpty(file),
                                          .parameters = TextOrEmpty(parameters),
                                          .directory = TextOrEmpty(directory),
                                          .show = show});
  return reinterpret_cast<HINSTANCE>(INT_PTR{42});  // above 32: it went well
}

HWND WINAPI Help(HWND owner, const wchar_t* topic, UINT command, DWORD_PTR data) {
  MachineLock machine;
  HelpRecord record{.owner = owner, .topic = TextOrEmpty(topic), .command = command, .ids = {}};
  if (command == HH_TP_HELP_WM_HELP && data != 0) {
    const auto* pairs = reinterpret_cast<const DWORD*>(data);
    while (pairs[0] != 0 || pairs[1] != 0) {
      record.ids.insert(record.ids.end(), {pairs[0], pairs[1]});
      pairs += 2;
    }
    record.ids.insert(record.ids.end(), {0, 0});
  }
  machine->Screen().helpCalls.push_back(std::move(record));
  return owner == nullptr ? GetDesktopWindow() : owner;
}

// A device event carries the description of what it is about.
LONG WINAPI Broadcast(DWORD, DWORD* recipients, UINT message, WPARAM, LPARAM lParam) {
  MachineLock machine;
  std::wstring detail = recipients == nullptr ? L"to all" : L"to some";
  if (message == WM_DEVICECHANGE) {
    const auto* about = reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*>(lParam);
    if (about == nullptr || about->dbcc_size != sizeof(*about) ||
        about->dbcc_devicetype != DBT_DEVTYP_DEVICEINTERFACE || about->dbcc_name[0] != L'\0') {
      machine->Calls().Violate("not the description of a class of devices");
    } else {
      detail += L", about " + GuidText(about->dbcc_classguid);
    }
  }
  machine->Calls().Note(detail);
  machine->Screen().broadcasts.push_back(message);
  return 1;
}

const FunctionRow kRows[] = {
    {"user32.dll", KD_SIMULATED(MessageBoxW, ShowBox), FailsWithZero(ERROR_NOT_ENOUGH_MEMORY)},
    {"user32.dll", KD_SIMULATED(MessageBeep, Beep), CannotFail()},
    {"shell32.dll", KD_SIMULATED(ShellExecuteW, Execute), FailsBelowThirtyThree(SE_ERR_NOASSOC)},
    {"hhctrl.ocx", KD_SIMULATED(HtmlHelpW, Help), FailsWithZero(0)},
    {"user32.dll", KD_SIMULATED(BroadcastSystemMessageW, Broadcast), FailsWithMinusOne(ERROR_ACCESS_DENIED)},
};

}  // namespace

const std::span<const FunctionRow> kScreenRows = kRows;

}  // namespace workbench
