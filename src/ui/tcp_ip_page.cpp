#include "ui/tcp_ip_page.h"

#include "base/resource_ids.h"
#include "config/port_type.h"
#include "status/address_text.h"

namespace {

constexpr wchar_t kHelpTopic[] = L"%s::/TcpIpPage.htm>mainwin";
constexpr wchar_t kHelpTopic485[] = L"%s::/TcpIpPage485.htm>mainwin";

constexpr HelpId kHelpIds[] = {
    {IDC_TCPIP_MAC_ADDRESS, 0x806B0357},  {IDC_TCPIP_ADDRESS, 0x806B0358},
    {IDC_TCPIP_PORT_NUMBER, 0x806B0359},  {IDC_TCPIP_ATTEMPT_TIMEOUT, 0x806B035A},
    {IDC_TCPIP_IDLE_TIMEOUT, 0x806B035B}, {IDC_TCPIP_RESTORE_DEFAULTS, 0x806B037C},
    {IDC_TCPIP_VERIFICATION, 0x806B035D}, kEndOfHelpIds,
};

// The string table has no tips for this page: its tools stay without one.
constexpr PageTables kTables{.helpIds = kHelpIds};

}  // namespace

CTcpIpSettingsPage::CTcpIpSettingsPage(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element)
    : CPortPageBase(IDD_TCPIP_PAGE, L"TCP/IP Settings", kTables, deviceInfoSet, element) {}

void CTcpIpSettingsPage::OnInitDialog() {
  CPortPageBase::OnInitDialog();
  SetUpBalloon();
  for (const int control : {IDC_TCPIP_ADDRESS, IDC_TCPIP_PORT_NUMBER}) AddTool(Control(control));
  fields_ = FieldsOf(busSet_);
  ShowAddress();
  ShowNumbers();
  SetText(IDC_TCPIP_MAC_ADDRESS, MacText(busSet_.MACAddress1, busSet_.MACAddress2));
  ShowVerification();
}

// Kept on purpose: own background
HBRUSH CTcpIpSettingsPage::OnControlColour(HDC) {
  return nullptr;
}

bool CTcpIpSettingsPage::OnClicked(int control) {
  if (control != IDC_TCPIP_RESTORE_DEFAULTS) return CPortPageBase::OnClicked(control);
  RestoreDefaults();
  return true;
}

void CTcpIpSettingsPage::ShowAddress() const {
  SetText(IDC_TCPIP_ADDRESS, Ipv4Text(busSet_.AddressToConnect));
}

void CTcpIpSettingsPage::ShowVerification() const {
  CheckDlgButton(Window(), IDC_TCPIP_VERIFICATION, fields_.verification ? BST_CHECKED : BST_UNCHECKED);
}

// After a number that its field refuses the next one is not written, so that the focus stays with the first.
void CTcpIpSettingsPage::ShowNumbers() const {
  if (!WriteUnsigned(Window(), IDC_TCPIP_PORT_NUMBER, fields_.tcpPort)) return;
  WriteUnsigned(Window(), IDC_TCPIP_ATTEMPT_TIMEOUT, fields_.attemptTimeout);
}

void CTcpIpSettingsPage::RestoreDefaults() {
  CKdNBusUserModeInterface defaults;
  if (!GetDefaultParameterSet(defaults, CKdNBusUserModeInterface::kSelector)) return;
  fields_ = RestoredFields(busSet_, defaults);
  ShowAddress();
  ShowVerification();
  ShowNumbers();
}

// Kept on purpose: help topics
const wchar_t* CTcpIpSettingsPage::HelpTopic() const {
  const bool rs485 = IsRs422485Port(portSet_.PortType, busSet_.SerialPortIndex);
  return rs485 ? kHelpTopic485 : kHelpTopic;
}

LRESULT CTcpIpSettingsPage::OnApply() {
  if (!ReadFields()) {
    // Kept on purpose: time-out text
    MessageBoxW(Window(), L"Please enter connection attempt timeout between 0 and 20.",
                L"Connection attempt timeout - out of Range", MB_ICONHAND);
    return PSNRET_INVALID;
  }
  if (!ReadBusSet()) return PSNRET_NOERROR;
  if (!ApplyFields(busSet_, fields_) || WriteBusSet()) return PSNRET_NOERROR;
  static_cast<void>(ReadBusSet());  // back to what the driver has
  return PSNRET_INVALID;
}

// Reads what the user may have edited; the first field that is not accepted gets the focus (RefuseValue).
bool CTcpIpSettingsPage::ReadFields() {
  if (!ReadField(IDC_TCPIP_PORT_NUMBER, kMaximumTcpPort, fields_.tcpPort)) return false;
  if (!ReadField(IDC_TCPIP_ATTEMPT_TIMEOUT, kMaximumAttemptTimeout, fields_.attemptTimeout)) return false;
  fields_.verification = IsChecked(IDC_TCPIP_VERIFICATION);
  return true;
}

bool CTcpIpSettingsPage::ReadField(int control, std::uint32_t maximum, std::uint32_t& value) const {
  const std::optional<std::uint32_t> entered = ReadUnsigned(Window(), control);
  if (!entered || *entered > maximum) {
    RefuseValue(Window(), control);
    return false;
  }
  value = *entered;
  return true;
}

void CTcpIpSettingsPage::SetText(int control, const CWideString& text) const {
  SetDlgItemTextW(Window(), control, text.Text());
}
