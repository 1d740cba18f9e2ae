#include "workbench/demo/tip_texts.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <vector>

#include "workbench/demo/control_check.h"
#include "workbench/demo/text_table.h"

namespace workbench {
namespace {

constexpr std::size_t kLongestTip = 1024;  // characters; TTM_GETTEXTW cuts off what is longer

TTTOOLINFOW ToolOf(HWND page, HWND control, wchar_t* text) {
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_IDISHWND;
  tool.hwnd = page;
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = text;
  return tool;
}

struct Search {
  HWND page;
  HWND found;
};

BOOL CALLBACK IsTipControlOf(HWND window, LPARAM lParam) {
  auto& search = *reinterpret_cast<Search*>(lParam);
  wchar_t name[32] = L"";
  GetClassNameW(window, name, 32);
  if (lstrcmpiW(name, TOOLTIPS_CLASSW) != 0) return TRUE;
  TTTOOLINFOW tool = ToolOf(search.page, search.page, nullptr);
  if (!SendMessageW(window, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool))) return TRUE;
  search.found = window;
  return FALSE;
}

std::vector<HWND> ChildrenOf(HWND page) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(page, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
    children.push_back(child);
  return children;
}

std::wstring TipOf(HWND tips, HWND page, HWND control) {
  std::array<wchar_t, kLongestTip> text{};
  TTTOOLINFOW tool = ToolOf(page, control, text.data());
  SendMessageW(tips, TTM_GETTEXTW, text.size(), reinterpret_cast<LPARAM>(&tool));
  std::wstring tip = text.data();
  std::ranges::replace(tip, L'\n', L' ');
  return tip;
}

}  // namespace

std::wstring FormatTips(HWND page) {
  Search search{page, nullptr};
  EnumThreadWindows(GetWindowThreadProcessId(page, nullptr), &IsTipControlOf,
                    reinterpret_cast<LPARAM>(&search));
  TextTable table({L"Id", L"Control", L"Tip"});
  for (const HWND child : ChildrenOf(page)) {
    const std::wstring tip = TipOf(search.found, page, child);
    if (!tip.empty()) table.Add({std::to_wstring(GetDlgCtrlID(child)), LabelText(child), tip});
  }
  return table.Text();
}

}  // namespace workbench
