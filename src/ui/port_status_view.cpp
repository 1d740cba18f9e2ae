#include "ui/port_status_view.h"

#include <optional>
#include <span>
#include <string>

#include "base/resource_ids.h"

namespace {

using StatusText = CWideString PortStatus::*;
struct StatusRow {
  int control;
  StatusText text;
};

// In the order in which they are filled.
constexpr StatusRow kRows[] = {
    {IDC_PORT_BAUD_RATE, &PortStatus::baudRate},
    {IDC_PORT_DATA_BITS, &PortStatus::dataBits},
    {IDC_PORT_PARITY, &PortStatus::parity},
    {IDC_PORT_STOP_BITS, &PortStatus::stopBits},
    {IDC_PORT_FLOW_CONTROL, &PortStatus::flowControl},
    {IDC_PORT_DUPLEX, &PortStatus::duplex},
    {IDC_PORT_STATE, &PortStatus::state},
    {IDC_PORT_MODE, &PortStatus::mode},
};

constexpr int kDuplexRow[] = {IDC_PORT_DUPLEX, IDC_PORT_DUPLEX_LABEL};
// Kept on purpose: missing controls
constexpr int kOverrideMarks[] = {IDC_PORT_OVERRIDE_NOTE, IDC_PORT_OVERRIDE_MARK, IDC_PORT_OVERRIDE_ICON};

void ShowText(HWND page, int control, const CWideString& text) {
  const HWND window = GetDlgItem(page, control);
  // One element more than the text, so that a longer one is seen to differ.
  std::wstring shown(text.Length() + 2, L'\0');
  const int length = GetWindowTextW(window, shown.data(), static_cast<int>(shown.size()));
  shown.resize(static_cast<std::size_t>(length));
  if (shown != text.View()) SetWindowTextW(window, text.Text());
}

void Show(HWND page, std::span<const int> controls, bool visible) {
  for (const int control : controls) {
    const HWND window = GetDlgItem(page, control);
    if (window == nullptr) continue;
    const bool isVisible = (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0;
    if (isVisible != visible) ShowWindow(window, visible ? SW_SHOW : SW_HIDE);
  }
}

void Enable(HWND window, const std::optional<bool>& enabled) {
  if (enabled && (IsWindowEnabled(window) != FALSE) != *enabled) EnableWindow(window, *enabled);
}

void SetBox(HWND page, int boxId, int labelId, const BoxChange& change) {
  const HWND box = GetDlgItem(page, boxId);
  const WPARAM state = change.checked.value_or(false) ? BST_CHECKED : BST_UNCHECKED;
  if (change.checked && static_cast<WPARAM>(SendMessageW(box, BM_GETCHECK, 0, 0)) != state) {
    SendMessageW(box, BM_SETCHECK, state, 0);
  }
  Enable(box, change.boxEnabled);
  Enable(GetDlgItem(page, labelId), change.labelEnabled);
}

}  // namespace

void ShowStatusTexts(HWND page, const PortStatus& status) {
  for (const StatusRow& row : kRows) ShowText(page, row.control, status.*row.text);
  Show(page, kDuplexRow, status.showDuplex);
}

void ShowHandshake(HWND page, const HandshakeChange& change) {
  SetBox(page, IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL, change.cts);
  SetBox(page, IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL, change.dsr);
}

void ShowOverrideMarks(HWND page, bool visible) {
  Show(page, kOverrideMarks, visible);
}
