#include "workbench/demo/control_check.h"

#include <commctrl.h>

#include <algorithm>

#include "workbench/demo/text_table.h"
#include "workbench/rig/page_controls.h"

namespace workbench {
namespace {

constexpr std::wstring_view kInUse = L" (in use)";

bool IsCheckBox(HWND window) {
  const auto kind = GetWindowLongPtrW(window, GWL_STYLE) & BS_TYPEMASK;
  return IsOfClass(window, WC_BUTTONW) && (kind == BS_CHECKBOX || kind == BS_AUTOCHECKBOX);
}

std::wstring SelectionInWords(HWND page, int combo) {
  const std::wstring selected = SelectedOf(page, combo);
  return selected.empty() ? L"(no selection)" : selected;
}

}  // namespace

std::wstring CheckBoxInWords(bool checked, bool enabled) {
  return std::wstring(checked ? L"checked" : L"not checked") + (enabled ? L"" : L", greyed");
}

std::wstring ReadControl(HWND page, int control) {
  const HWND window = GetDlgItem(page, control);
  if (!window) return L"(missing)";
  if (!(GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE)) return L"(hidden)";
  if (IsCheckBox(window)) {
    return CheckBoxInWords(IsChecked(page, control), IsWindowEnabled(window) != FALSE);
  }
  return IsOfClass(window, WC_COMBOBOXW) ? SelectionInWords(page, control) : TextOf(window);
}

std::wstring NumbersInUseInWords(const std::vector<std::wstring>& names, std::size_t entries) {
  std::wstring text;
  for (const std::wstring& name : names) text += name + L" ";
  return text + L"of " + std::to_wstring(entries);
}

std::wstring ReadNumbersInUse(HWND page, int combo) {
  const std::vector<std::wstring> entries = EntriesOf(page, combo);
  std::vector<std::wstring> inUse;
  for (const std::wstring& entry : entries) {
    if (entry.ends_with(kInUse)) inUse.push_back(entry.substr(0, entry.size() - kInUse.size()));
  }
  return NumbersInUseInWords(inUse, entries.size());
}

std::wstring LabelText(HWND label) {
  std::wstring text = TextOf(label);
  std::erase(text, L'&');
  while (text.ends_with(L':') || text.ends_with(L' ')) text.pop_back();
  return text;
}

std::wstring LabelOf(HWND page, int control) {
  const HWND window = GetDlgItem(page, control);
  const bool ownText = IsOfClass(window, WC_BUTTONW) && GetWindowTextLengthW(window) > 0;
  return LabelText(ownText ? window : GetWindow(window, GW_HWNDPREV));
}

std::vector<ControlCheck> CheckControls(HWND page, const std::vector<ExpectedControl>& expected) {
  std::vector<ControlCheck> checks;
  for (const ExpectedControl& one : expected) {
    checks.push_back({one.control, LabelOf(page, one.control), ReadControl(page, one.control), one.shows});
  }
  return checks;
}

bool AllAgree(const std::vector<ControlCheck>& checks) {
  return std::ranges::all_of(checks, &ControlCheck::Agrees);
}

std::wstring FormatChecks(const std::vector<ControlCheck>& checks, const std::wstring& source) {
  TextTable table({L"Id", L"Label", L"Shows", source, L""});
  for (const ControlCheck& check : checks) {
    table.Add({check.control == 0 ? L"" : std::to_wstring(check.control), check.label, check.shows,
               check.expected, check.Agrees() ? L"ok" : L"DIFFERS"});
  }
  return table.Text();
}

}  // namespace workbench
