#include "status/refresh_port_status.h"

#include <optional>
#include <span>
#include <string>

#include "base/resource_ids.h"
#include "inet/internet_exception.h"
#include "status/port_status.h"
#include "status/status_download.h"

namespace {

struct StatusRow {
  int control;
  CWideString PortStatus::*text;
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

CWideString AddressText(std::uint32_t address) {
  const auto part = [address](int shift) { return static_cast<int>(address >> shift & 0xFF); };
  return CWideString::Format(L"%d.%d.%d.%d", part(24), part(16), part(8), part(0));
}

// The document, or the empty one of a device server that does not answer.
CWideString FetchDocument(const PortStatusTarget& target, bool showErrors) {
  const PortWebAddress& web = target.web;
  try {
    return DownloadStatusDocument(web.host, web.webPort,
                                  CWideString::Format(L"/p%d", static_cast<std::int32_t>(web.portNumber)));
  } catch (const KdINet::CInternetException&) {
    if (showErrors) {
      MessageBoxW(target.page, L"Cannot load device information data from the device. Device may be offline.",
                  L"Warning", MB_OK | MB_ICONEXCLAMATION);
    }
    return {};
  }
}

}  // namespace

void RefreshPortStatus(const PortStatusTarget& target, bool showErrors) {
  // Kept on purpose: unread sets
  static_cast<void>(target.channel.GetParameterSet(target.portSet, CKdUVcpUserModeInterface::kSelector));
  static_cast<void>(target.channel.GetParameterSet(target.busSet, CKdNBusUserModeInterface::kSelector));
  target.web = {AddressText(target.busSet.AddressToConnect),
                static_cast<std::uint16_t>(target.busSet.ServerWebPort), target.busSet.SerialPortIndex};

  // Kept on purpose: write under the warning
  const CWideString document = FetchDocument(target, showErrors);
  const PortStatus status = AdoptStatusDocument(document, target.portSet, target.busSet);
  for (const StatusRow& row : kRows) ShowText(target.page, row.control, status.*row.text);
  Show(target.page, kDuplexRow, status.showDuplex);

  static_cast<void>(target.channel.SetParameterSet(target.portSet, CKdUVcpUserModeInterface::kSelector));
  static_cast<void>(target.channel.SetParameterSet(target.busSet, CKdNBusUserModeInterface::kSelector));

  SetBox(target.page, IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL, status.boxes.cts);
  SetBox(target.page, IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL, status.boxes.dsr);
  Show(target.page, kOverrideMarks, status.showOverrideMarks);
}

CWideString PortWebPage(const PortWebAddress& web) {
  return CWideString::Format(L"http://%s:%d/serialport%d.html", web.host, static_cast<int>(web.webPort),
                             static_cast<std::int32_t>(web.portNumber));
}
