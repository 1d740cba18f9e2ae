#include "workbench/rig/page_controls.h"

#include <commctrl.h>

#include <stdexcept>
#include <utility>

namespace workbench {

bool IsOfClass(HWND window, const wchar_t* name) {
  wchar_t own[32] = L"";
  GetClassNameW(window, own, 32);
  return lstrcmpiW(own, name) == 0;
}

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

std::wstring TextOf(HWND page, int control) {
  return TextOf(GetDlgItem(page, control));
}

void Enter(HWND page, int control, const std::wstring& text) {
  SetDlgItemTextW(page, control, text.c_str());
}

bool IsChecked(HWND page, int box) {
  return SendDlgItemMessageW(page, box, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool IsShown(HWND page, int control) {
  const HWND window = GetDlgItem(page, control);
  return window != nullptr && (GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE) != 0;
}

void Click(HWND page, int control) {
  const HWND window = GetDlgItem(page, control);
  if (!IsWindowEnabled(window)) return;
  if (IsOfClass(window, WC_BUTTONW)) {
    SendMessageW(window, BM_CLICK, 0, 0);
    return;
  }
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
}

std::vector<std::wstring> EntriesOf(HWND page, int combo) {
  const HWND window = GetDlgItem(page, combo);
  std::vector<std::wstring> entries;
  const LRESULT count = SendMessageW(window, CB_GETCOUNT, 0, 0);
  for (LRESULT at = 0; at < count; ++at) {
    const auto index = static_cast<WPARAM>(at);
    std::wstring entry(static_cast<std::size_t>(SendMessageW(window, CB_GETLBTEXTLEN, index, 0)), L'\0');
    SendMessageW(window, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(entry.data()));
    entries.push_back(std::move(entry));
  }
  return entries;
}

std::wstring SelectedOf(HWND page, int combo) {
  const LRESULT index = SendDlgItemMessageW(page, combo, CB_GETCURSEL, 0, 0);
  return index == CB_ERR ? std::wstring() : EntriesOf(page, combo).at(static_cast<std::size_t>(index));
}

void Select(HWND page, int combo, const std::wstring& entry) {
  const HWND window = GetDlgItem(page, combo);
  const LRESULT index = SendMessageW(window, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                     reinterpret_cast<LPARAM>(entry.c_str()));
  if (index == CB_ERR) throw std::invalid_argument("The list has no such entry");
  SendMessageW(window, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  SendMessageW(page, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE), reinterpret_cast<LPARAM>(window));
}

std::wstring TipOf(HWND page, HWND tool) {
  NMTTDISPINFOW request{};
  request.hdr.code = TTN_GETDISPINFOW;
  request.hdr.idFrom = reinterpret_cast<UINT_PTR>(tool);
  request.uFlags = TTF_IDISHWND;
  SendMessageW(page, WM_NOTIFY, request.hdr.idFrom, reinterpret_cast<LPARAM>(&request));
  return request.lpszText != nullptr ? request.lpszText : L"(no answer)";
}

void AskForHelp(HWND page, int control, int contextType) {
  HELPINFO request{};
  request.cbSize = sizeof request;
  request.iContextType = contextType;
  request.iCtrlId = control;
  request.hItemHandle = GetDlgItem(page, control);
  SendMessageW(page, WM_HELP, 0, reinterpret_cast<LPARAM>(&request));
}

void PumpMessages(DWORD milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  do {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    if (milliseconds != 0) Sleep(10);
  } while (GetTickCount64() < end);
}

void PaintNow(HWND window) {
  PumpMessages();
  RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  GdiFlush();
}

void CenterOnScreen(HWND window) {
  RECT frame{};
  GetWindowRect(window, &frame);
  const int left = (GetSystemMetrics(SM_CXSCREEN) - (frame.right - frame.left)) / 2;
  const int top = (GetSystemMetrics(SM_CYSCREEN) - (frame.bottom - frame.top)) / 2;
  SetWindowPos(window, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace workbench
