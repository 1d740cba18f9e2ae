#include "ui/port_page.h"

#include <shellapi.h>

#include "base/resource_ids.h"
#include "config/port_type.h"
#include "install/devices/port_in_use.h"
#include "status/status_download.h"
#include "status/utils.h"
#include "ui/advanced_dialog.h"
#include "ui/port_rules.h"
#include "ui/port_status_view.h"

namespace {

// Kept on purpose: missing controls
constexpr ControlText kTexts[] = {
    {IDC_PORT_STATE_LABEL, IDS_PORT_STATE},
    {IDC_PORT_MODE_LABEL, IDS_PORT_MODE},
    {IDC_PORT_BAUD_RATE_LABEL, IDS_BAUD_RATE},
    {IDC_PORT_DATA_BITS_LABEL, IDS_DATA_BITS},
    {IDC_PORT_PARITY_LABEL, IDS_PARITY},
    {IDC_PORT_STOP_BITS_LABEL, IDS_STOP_BITS},
    {IDC_PORT_FLOW_CONTROL_LABEL, IDS_FLOW_CONTROL},
    {IDC_PORT_DUPLEX_LABEL, IDS_DUPLEX_MODE},
    {IDC_PORT_CTS_LABEL, IDS_CTS_ALWAYS_TRUE},
    {IDC_PORT_DSR_LABEL, IDS_DSR_ALWAYS_TRUE},
    {IDC_PORT_OVERRIDE_NOTE, IDS_OVERRIDE_NOTE},
    {IDC_PORT_HELP_LABEL, IDS_NEED_MORE_HELP},
    {IDC_PORT_SETTINGS_GROUP, IDS_SETTINGS_GROUP},
    {IDC_PORT_ADVANCED, IDS_ADVANCED},
    {IDC_PORT_RESTORE_DEFAULTS, IDS_RESTORE_DEFAULT},
};

// Kept on purpose: no baud rate tip
constexpr ToolTipText kTips[] = {
    {IDC_PORT_DATA_BITS_LABEL, IDS_TIP_DATA_BITS},
    {IDC_PORT_DATA_BITS, IDS_TIP_DATA_BITS},
    {IDC_PORT_PARITY_LABEL, IDS_TIP_PARITY},
    {IDC_PORT_PARITY, IDS_TIP_PARITY},
    {IDC_PORT_STOP_BITS_LABEL, IDS_TIP_STOP_BITS},
    {IDC_PORT_STOP_BITS, IDS_TIP_STOP_BITS},
    {IDC_PORT_FLOW_CONTROL_LABEL, IDS_TIP_FLOW_CONTROL},
    {IDC_PORT_FLOW_CONTROL, IDS_TIP_FLOW_CONTROL},
    {IDC_PORT_ADVANCED, IDS_TIP_ADVANCED},
    {IDC_PORT_RESTORE_DEFAULTS, IDS_TIP_RESTORE_DEFAULTS},
};

constexpr HelpId kHelpIds[] = {
    {IDC_PORT_CTS_ALWAYS_TRUE, 0x806B00D3},  {IDC_PORT_CTS_LABEL, 0x806B00D3},
    {IDC_PORT_DSR_ALWAYS_TRUE, 0x806B00CD},  {IDC_PORT_DSR_LABEL, 0x806B00CD},
    {IDC_PORT_RESTORE_DEFAULTS, 0x806B037C}, {IDC_PORT_ADVANCED, 0x806B0348},
    {IDC_PORT_CONFIGURE, 0x806B035E},        kEndOfHelpIds,
};

constexpr PageTables kTables{.texts = kTexts, .tips = kTips, .helpIds = kHelpIds};

// Sets a flag for as long as it lives.
class CFlagScope {
 public:
  explicit CFlagScope(bool& flag) noexcept : flag_(flag) { flag_ = true; }
  ~CFlagScope() { flag_ = false; }
  CFlagScope(const CFlagScope&) = delete;
  CFlagScope& operator=(const CFlagScope&) = delete;

 private:
  bool& flag_;
};

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshInterval = 5000;  // milliseconds

// Made tools once more, so that the tip follows them also where a child window is not enumerated.
constexpr int kTools[] = {IDC_PORT_BAUD_RATE_LABEL, IDC_PORT_DATA_BITS_LABEL,    IDC_PORT_PARITY_LABEL,
                          IDC_PORT_STOP_BITS_LABEL, IDC_PORT_FLOW_CONTROL_LABEL, IDC_PORT_ADVANCED,
                          IDC_PORT_RESTORE_DEFAULTS};

}  // namespace

CKdUIPropertyPage::CKdUIPropertyPage(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element)
    : CPortPageBase(IDD_PORT_PAGE, MAKEINTRESOURCEW(IDS_PORT_SETTINGS_TITLE), kTables, deviceInfoSet,
                    element) {}

void CKdUIPropertyPage::OnInitDialog() {
  CPortPageBase::OnInitDialog();
  SetTexts();
  SetUpTips();
  RefreshPortStatus(true);
}

void CKdUIPropertyPage::SetUpTips() const {
  SetUpBalloon();
  for (const int control : kTools) AddTool(Control(control));
}

// Kept on purpose: ticks and boxes
bool CKdUIPropertyPage::OnTimer(UINT_PTR) {
  RefreshSilently();
  return true;
}

bool CKdUIPropertyPage::OnClose() {
  KillTimer(Window(), timer_);
  RefreshSilently();
  return true;
}

bool CKdUIPropertyPage::OnClicked(int control) {
  switch (control) {
    case IDC_PORT_ADVANCED:
      OnAdvanced();
      return true;
    case IDC_PORT_RESTORE_DEFAULTS:
      // Everything comes from the driver and the device server again; nothing else is reset.
      RefreshPortStatus(true);
      return true;
    case IDC_PORT_CONFIGURE:
      OpenPortWebPage();
      return true;
    default:
      return CPortPageBase::OnClicked(control);
  }
}

void CKdUIPropertyPage::RefreshPortStatus(bool showErrors) {
  if (refreshing_) return;
  const CFlagScope scope(refreshing_);
  const HWND focus = GetFocus();
  // Kept on purpose: unread sets
  // Kept on purpose: write under the warning
  static_cast<void>(ReadPortSet());
  static_cast<void>(ReadBusSet());
  web_ = WebAddressOf(busSet_);
  const PortStatus status = ApplyStatusDocument(FetchDocument(showErrors), portSet_, busSet_);
  ShowStatusTexts(Window(), status);
  static_cast<void>(WritePortSet());
  static_cast<void>(WriteBusSet());
  ShowHandshake(Window(), status.boxes);
  ShowOverrideMarks(Window(), status.showOverrideMarks);
  KeepFocusUsable(focus);
}

CWideString CKdUIPropertyPage::FetchDocument(bool showErrors) const {
  if (const auto document = FetchStatusDocument(web_)) return *document;
  if (showErrors) {
    MessageBoxW(Window(), L"Cannot load device information data from the device. Device may be offline.",
                L"Warning", MB_OK | MB_ICONEXCLAMATION);
  }
  return {};
}

void CKdUIPropertyPage::RefreshSilently() {
  if (!applying_) RefreshPortStatus(false);
}

// Windows leaves the focus on a control that is disabled, where keys do nothing; the next control gets it.
void CKdUIPropertyPage::KeepFocusUsable(HWND focusBefore) const {
  if (!IsChild(Window(), focusBefore) || IsWindowEnabled(focusBefore)) return;
  SetFocus(GetNextDlgTabItem(Window(), focusBefore, FALSE));
}

LRESULT CKdUIPropertyPage::OnApply() {
  const CFlagScope scope(applying_);
  const HandshakeBoxes boxes{.ctsAlwaysTrue = IsChecked(IDC_PORT_CTS_ALWAYS_TRUE),
                             .dsrAlwaysTrue = IsChecked(IDC_PORT_DSR_ALWAYS_TRUE)};
  if (!ApplyHandshake(portSet_, busSet_.SerialPortIndex, boxes, settingsChanged_)) return PSNRET_NOERROR;
  const CWideString portName = PortName();
  if (!IsPortOpenable(portName) &&
      ShowMessage(IDS_PORT_OPEN_SETTINGS, L"Warning!", MB_YESNO | MB_ICONINFORMATION) == IDNO) {
    // The boxes keep the choice: the user may close the other application and try again.
    static_cast<void>(ReadPortSet());
    return PSNRET_INVALID;
  }
  // Whether the driver took the set shows in the refresh, which reads it again.
  static_cast<void>(WritePortSet());
  settingsChanged_ = false;
  RefreshPortStatus(true);
  WriteCurrentPortsSettings(portName);
  return PSNRET_NOERROR;
}

// For programs that read a port's settings there. Settings without a form in such a string are not written.
// Kept on purpose: no PortName
void CKdUIPropertyPage::WriteCurrentPortsSettings(const CWideString& portName) const {
  if (portName.IsEmpty()) return;
  static_cast<void>(CUtils().WritePortsDefaultSettings(portName, portSet_.Baudrate, portSet_.Databits,
                                                       portSet_.Parity, portSet_.Stopbits,
                                                       portSet_.FlowControl));
}

void CKdUIPropertyPage::OnAdvanced() {
  CAdvancedDialog sheet(DeviceSet(), DeviceElement());
  if (sheet.DoModal(GetActiveWindow()) != CPropertySheetImpl::kSaved) return;
  if (!ReadPortSet()) return;
  portSet_.DuplexMode = sheet.Rs485DuplexMode();
  ShowHandshake(Window(), HandshakeAfterAdvanced(portSet_, busSet_.SerialPortIndex));
}

// Opens the device server's page for the port. From then on the page is refreshed every few seconds, because
// the user may change the port's settings there.
void CKdUIPropertyPage::OpenPortWebPage() {
  const CWideString address = PortWebPage(web_);
  ShellExecuteW(Window(), L"open", address.Text(), nullptr, nullptr, SW_SHOWNORMAL);
  timer_ = SetTimer(Window(), kRefreshTimer, kRefreshInterval, nullptr);
}

const wchar_t* CKdUIPropertyPage::HelpTopic() const {
  const bool rs422485 = IsRs422485Port(portSet_.PortType, busSet_.SerialPortIndex);
  return rs422485 ? L"%s::/StdPage485.htm>mainwin" : L"%s::/StdPage.htm>mainwin";
}
