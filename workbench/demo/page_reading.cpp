#include "workbench/demo/page_reading.h"

#include <algorithm>

#include "base/resource_ids.h"

namespace workbench {
namespace {

constexpr int kValues[] = {IDC_PORT_STATE,  IDC_PORT_MODE,      IDC_PORT_BAUD_RATE,    IDC_PORT_DATA_BITS,
                           IDC_PORT_PARITY, IDC_PORT_STOP_BITS, IDC_PORT_FLOW_CONTROL, IDC_PORT_DUPLEX};

std::wstring Expected(int control, const PageExpectation& expectation) {
  if (control == IDC_PORT_DUPLEX && !expectation.duplexShown) return L"(hidden)";
  return std::ranges::find(expectation.texts, control, &ExpectedControl::control)->shows;
}

}  // namespace

std::vector<ControlCheck> CheckPage(HWND page, const PageExpectation& expectation) {
  std::vector<ExpectedControl> expected;
  for (const int control : kValues) expected.push_back({control, Expected(control, expectation)});
  expected.push_back(
      {IDC_PORT_CTS_ALWAYS_TRUE, CheckBoxInWords(expectation.cts.checked, expectation.cts.enabled)});
  expected.push_back(
      {IDC_PORT_DSR_ALWAYS_TRUE, CheckBoxInWords(expectation.dsr.checked, expectation.dsr.enabled)});
  return CheckControls(page, expected);
}

}  // namespace workbench
