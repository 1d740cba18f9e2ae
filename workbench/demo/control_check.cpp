#include "workbench/demo/control_check.h"

#include <commctrl.h>

#include <algorithm>

#include "workbench/demo/report.h"
#include "workbench/rig/page_controls.h"
#include "workbench/text/text_table.h"

namespace workbench {
namespace {

constexpr std::wstring_view kInUse = L" (in use)";

bool IsCheckBox(HWND window) {
  const auto kind = GetWindowLongPtrW(window, GWL_STYLE) & BS_TYPEMASK;
  return IsOfClass(window, WC_BUTTONW) && (kind == BS_CHECKBOX || kind == BS_AUTOCHECKBOX);
}

// The words of a label, without its mnemonic and its colon.
std::wstring LabelText(HWND label) {
  std::wstring text = TextOf(label);
  std::erase(text, L'&');
  while (text.ends_with(L':') || text.ends_with(L' ')) text.pop_back();
  return text;
}

// The label that a control goes by: a button's own text or, without one, the text that stands before the
// control, which is what a screen reader reads out.
std::wstring LabelOf(HWND page, int control) {
  const HWND window = GetDlgItem(page, control);
  const bool ownText = IsOfClass(window, WC_BUTTONW) && GetWindowTextLengthW(window) > 0;
  return LabelText(ownText ? window : GetWindow(window, GW_HWNDPREV));
}

}  // namespace

std::wstring ReadControl(HWND page, int control) {
  const HWND window = GetDlgItem(page, control);
  if (!window) return L"(missing)";
  if (!IsShown(page, control)) return L"(hidden)";
  if (IsCheckBox(window)) {
    return std::wstring(IsChecked(page, control) ? L"checked" : L"not checked") +
           (IsWindowEnabled(window) ? L"" : L", greyed");
  }
  return IsOfClass(window, WC_COMBOBOXW) ? SelectedOf(page, control) : TextOf(window);
}

std::wstring ReadNamesInUse(HWND page, int combo) {
  const std::vector<std::wstring> entries = EntriesOf(page, combo);
  std::wstring text;
  for (const std::wstring& entry : entries) {
    if (entry.ends_with(kInUse)) text += entry.substr(0, entry.size() - kInUse.size()) + L" ";
  }
  return text + L"of " + std::to_wstring(entries.size());
}

std::vector<ControlCheck> CheckControls(HWND page, const std::vector<ExpectedControl>& expected) {
  std::vector<ControlCheck> checks;
  for (const ExpectedControl& one : expected) {
    checks.push_back({one.control, LabelOf(page, one.control), ReadControl(page, one.control), one.shows});
  }
  return checks;
}

bool ReportChecks(const std::vector<ControlCheck>& checks, const std::wstring& source) {
  TextTable table({L"Id", L"Label", L"Shows", source, L""});
  for (const ControlCheck& check : checks) {
    table.Add({std::to_wstring(check.control), check.label, check.shows, check.expected,
               check.Agrees() ? L"ok" : L"DIFFERS"});
  }
  Print(table.Text());
  return std::ranges::all_of(checks, &ControlCheck::Agrees);
}

void PrintTips(HWND page) {
  TextTable table({L"Id", L"Control", L"Tip"});
  for (HWND child = GetWindow(page, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    std::wstring tip = TipOf(page, child);
    std::ranges::replace(tip, L'\n', L' ');
    if (!tip.empty()) table.Add({std::to_wstring(GetDlgCtrlID(child)), LabelText(child), tip});
  }
  Print(L"\n" + table.Text());
}

}  // namespace workbench
