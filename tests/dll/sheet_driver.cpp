#include "sheet_driver.h"

#include <commctrl.h>
#include <gtest/gtest.h>
#include <prsht.h>

#include <algorithm>

namespace {

BOOL CALLBACK Collect(HWND window, LPARAM list) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, ARRAYSIZE(name));
  const bool sheet = std::wstring(name) == L"#32770" && IsWindowVisible(window) &&
                     SendMessageW(window, PSM_GETTABCONTROL, 0, 0) != 0;
  if (sheet) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

std::vector<HWND> SheetsOfThread() {
  std::vector<HWND> sheets;
  EnumThreadWindows(GetCurrentThreadId(), &Collect, reinterpret_cast<LPARAM>(&sheets));
  return sheets;
}

}  // namespace

SheetDriver::SheetDriver(const std::function<void(const OpenSheet&)>& step)
    : step_(step), outer_(current_), known_(SheetsOfThread()) {
  current_ = this;
  timer_ = SetTimer(nullptr, 0, 10, &SheetDriver::Tick);
}

SheetDriver::~SheetDriver() {
  KillTimer(nullptr, timer_);
  current_ = outer_;
}

void CALLBACK SheetDriver::Tick(HWND, UINT, UINT_PTR timer, DWORD) {
  if (current_ != nullptr && current_->timer_ == timer && !current_->busy_) current_->Serve();
}

void SheetDriver::Serve() {
  for (const HWND window : SheetsOfThread()) {
    if (std::find(known_.begin(), known_.end(), window) != known_.end()) continue;
    busy_ = true;
    const OpenSheet sheet(window);
    if (!hasRun_) {
      hasRun_ = true;
      step_(sheet);
    } else {
      wasCancelled_ = true;
      sheet.PressCancel();
    }
    busy_ = false;
    return;
  }
}

std::wstring OpenSheet::Caption() const {
  wchar_t text[128] = {};
  GetWindowTextW(window_, text, ARRAYSIZE(text));
  return text;
}

std::vector<std::wstring> OpenSheet::Tabs() const {
  const HWND tabs = PropSheet_GetTabControl(window_);
  std::vector<std::wstring> names;
  for (int index = 0; index < TabCtrl_GetItemCount(tabs); ++index) {
    wchar_t text[64] = {};
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = ARRAYSIZE(text);
    SendMessageW(tabs, TCM_GETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    names.push_back(text);
  }
  return names;
}

HWND OpenSheet::Turn(int tab) const {
  PropSheet_SetCurSel(window_, nullptr, tab);
  return PropSheet_GetCurrentPageHwnd(window_);
}

void OpenSheet::PressOk() const {
  SendMessageW(window_, PSM_PRESSBUTTON, PSBTN_OK, 0);
}

void OpenSheet::PressCancel() const {
  SendMessageW(window_, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
}

std::wstring TextOf(HWND page, int control) {
  wchar_t text[256] = {};
  GetDlgItemTextW(page, control, text, ARRAYSIZE(text));
  return text;
}

void Enter(HWND page, int control, const std::wstring& text) {
  SetDlgItemTextW(page, control, text.c_str());
}

bool IsChecked(HWND page, int control) {
  return SendDlgItemMessageW(page, control, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void Click(HWND page, int control) {
  const HWND window = GetDlgItem(page, control);
  wchar_t name[16] = {};
  GetClassNameW(window, name, ARRAYSIZE(name));
  if (lstrcmpiW(name, L"button") == 0) {
    SendMessageW(window, BM_CLICK, 0, 0);
  } else {
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
  }
}

std::vector<std::wstring> EntriesOf(HWND page, int combo) {
  std::vector<std::wstring> entries;
  const LRESULT count = SendDlgItemMessageW(page, combo, CB_GETCOUNT, 0, 0);
  for (LRESULT index = 0; index < count; ++index) {
    wchar_t text[128] = {};
    SendDlgItemMessageW(page, combo, CB_GETLBTEXT, static_cast<WPARAM>(index),
                        reinterpret_cast<LPARAM>(text));
    entries.push_back(text);
  }
  return entries;
}

std::wstring SelectedOf(HWND page, int combo) {
  const LRESULT index = SendDlgItemMessageW(page, combo, CB_GETCURSEL, 0, 0);
  return index == CB_ERR ? std::wstring() : EntriesOf(page, combo)[static_cast<std::size_t>(index)];
}

void Select(HWND page, int combo, const std::wstring& entry) {
  const LRESULT index = SendDlgItemMessageW(page, combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                            reinterpret_cast<LPARAM>(entry.c_str()));
  ASSERT_NE(index, CB_ERR) << testing::PrintToString(entry);
  SendDlgItemMessageW(page, combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  SendMessageW(page, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE),
               reinterpret_cast<LPARAM>(GetDlgItem(page, combo)));
}
