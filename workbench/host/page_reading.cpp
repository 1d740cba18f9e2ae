#include "workbench/host/page_reading.h"

#include <algorithm>
#include <array>

#include "base/resource_ids.h"
#include "workbench/host/text_table.h"

namespace workbench {
namespace {

struct LabelledControl {
  int control;
  int label;
};
constexpr std::array kValues = {
    LabelledControl{IDC_PORT_STATE, IDC_PORT_STATE_LABEL},
    LabelledControl{IDC_PORT_MODE, IDC_PORT_MODE_LABEL},
    LabelledControl{IDC_PORT_BAUD_RATE, IDC_PORT_BAUD_RATE_LABEL},
    LabelledControl{IDC_PORT_DATA_BITS, IDC_PORT_DATA_BITS_LABEL},
    LabelledControl{IDC_PORT_PARITY, IDC_PORT_PARITY_LABEL},
    LabelledControl{IDC_PORT_STOP_BITS, IDC_PORT_STOP_BITS_LABEL},
    LabelledControl{IDC_PORT_FLOW_CONTROL, IDC_PORT_FLOW_CONTROL_LABEL},
    LabelledControl{IDC_PORT_DUPLEX, IDC_PORT_DUPLEX_LABEL},
};

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

std::wstring LabelOf(HWND page, int label) {
  std::wstring text = TextOf(GetDlgItem(page, label));
  std::erase(text, L'&');
  while (text.ends_with(L':') || text.ends_with(L' ')) text.pop_back();
  return text;
}

// A control is shown when it is not hidden itself; the page may lie behind another one.
bool IsShown(HWND control) {
  return (GetWindowLongPtrW(control, GWL_STYLE) & WS_VISIBLE) != 0;
}

std::wstring Shown(HWND control, const std::wstring& content) {
  if (!control) return L"(missing)";
  return IsShown(control) ? content : L"(hidden)";
}

std::wstring InWords(bool checked, bool enabled) {
  return std::wstring(checked ? L"checked" : L"not checked") + (enabled ? L"" : L", greyed");
}

ControlCheck CheckBox(HWND page, const LabelledControl& box, const ExpectedCheckBox& expected) {
  const HWND control = GetDlgItem(page, box.control);
  const bool checked = SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED;
  return {box.control, LabelOf(page, box.label),
          Shown(control, InWords(checked, IsWindowEnabled(control) != FALSE)),
          InWords(expected.checked, expected.enabled)};
}

}  // namespace

std::vector<ControlCheck> CheckPage(HWND page, const PageExpectation& expectation) {
  std::vector<ControlCheck> checks;
  for (const LabelledControl& value : kValues) {
    const HWND control = GetDlgItem(page, value.control);
    const auto expected = std::ranges::find(expectation.texts, value.control, &ExpectedText::control);
    ControlCheck check{value.control, LabelOf(page, value.label), Shown(control, TextOf(control)),
                       expected->shows};
    if (value.control == IDC_PORT_DUPLEX && !expectation.duplexShown) check.expected = L"(hidden)";
    checks.push_back(std::move(check));
  }
  checks.push_back(CheckBox(page, {IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL}, expectation.cts));
  checks.push_back(CheckBox(page, {IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL}, expectation.dsr));
  return checks;
}

bool AllAgree(const std::vector<ControlCheck>& checks) {
  return std::ranges::all_of(checks, &ControlCheck::Agrees);
}

std::wstring FormatChecks(const std::vector<ControlCheck>& checks, const std::wstring& source) {
  TextTable table({L"Id", L"Label", L"Shows", source, L""});
  for (const ControlCheck& check : checks) {
    table.Add({std::to_wstring(check.control), check.label, check.shows, check.expected,
               check.Agrees() ? L"ok" : L"DIFFERS"});
  }
  return table.Text();
}

}  // namespace workbench
