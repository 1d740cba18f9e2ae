#include "ui/device_page.h"

#include <string>

#include "base/resource_ids.h"
#include "config/port_type.h"
#include "install/devices/port_in_use.h"
#include "install/naming/rename_com_port.h"
#include "status/utils.h"

namespace {

constexpr wchar_t kHelpTopic[] = L"%s::/AdvDevice.htm>mainwin";
constexpr wchar_t kHelpTopic485[] = L"%s::/AdvDevice485.htm>mainwin";

constexpr HelpId kHelpIds[] = {
    {IDC_DEVICE_COM_NUMBER, 0x807300CA},
    {IDC_DEVICE_CONNECT_OFFLINE, 0x806B035C},
    {IDC_DEVICE_HIGH_PERFORMANCE, 0x806B035F},
    kEndOfHelpIds,
};

// Kept on purpose: missing controls
constexpr ControlText kTexts[] = {
    {IDC_DEVICE_COM_NUMBER_LABEL, IDS_COM_PORT_NUMBER},
    {IDC_DEVICE_DUPLEX_NOTE, IDS_DUPLEX_NOTE},
    {IDC_DEVICE_COM_NUMBER_GROUP, IDS_COM_NUMBER_GROUP},
    {IDC_DEVICE_INFORMATION_GROUP, IDS_INFORMATION_GROUP},
    {IDC_DEVICE_INTERFACE_TYPE_LABEL, IDS_INTERFACE_TYPE},
    {IDC_DEVICE_RX_FIFO_SIZE_LABEL, IDS_RX_FIFO_SIZE},
    {IDC_DEVICE_TX_FIFO_SIZE_LABEL, IDS_TX_FIFO_SIZE},
    {IDC_DEVICE_MAX_BAUD_RATE_LABEL, IDS_MAX_BAUD_RATE},
    {IDC_DEVICE_HELP_LABEL, IDS_NEED_MORE_HELP},
};

constexpr ToolTipText kTips[] = {{IDC_DEVICE_COM_NUMBER, IDS_TIP_COM_NUMBER}};

constexpr PageTables kTables{.texts = kTexts, .tips = kTips, .helpIds = kHelpIds};

}  // namespace

CDeviceAdvSettingPage::CDeviceAdvSettingPage(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element)
    : CPortPageBase(IDD_DEVICE_PAGE, MAKEINTRESOURCEW(IDS_PORT_SETTINGS_TITLE), kTables, deviceInfoSet,
                    element) {}

void CDeviceAdvSettingPage::OnInitDialog() {
  CPortPageBase::OnInitDialog();
  SetUpBalloon();
  SetTexts();
  ShowInformation();
  FillComNames();
  const DeviceSwitches switches = SwitchesOf(busSet_);
  CheckDlgButton(Window(), IDC_DEVICE_CONNECT_OFFLINE, switches.connectOffline ? BST_CHECKED : BST_UNCHECKED);
  CheckDlgButton(Window(), IDC_DEVICE_HIGH_PERFORMANCE,
                 switches.highPerformance ? BST_CHECKED : BST_UNCHECKED);
}

void CDeviceAdvSettingPage::ShowInformation() const {
  const auto bytes = [](std::uint32_t size) {
    return CWideString::Format(L"%d bytes", static_cast<std::int32_t>(size));
  };
  const CWideString baud =
      CWideString::Format(L"%d baud", static_cast<std::int32_t>(busSet_.MaximumBaudRate));
  SetDlgItemTextW(Window(), IDC_DEVICE_INTERFACE_TYPE, busSet_.InterfaceType.Text());
  SetDlgItemTextW(Window(), IDC_DEVICE_RX_FIFO_SIZE, bytes(busSet_.RxFifoSize).Text());
  SetDlgItemTextW(Window(), IDC_DEVICE_TX_FIFO_SIZE, bytes(busSet_.TxFifoSize).Text());
  SetDlgItemTextW(Window(), IDC_DEVICE_MAX_BAUD_RATE, baud.Text());
}

void CDeviceAdvSettingPage::FillComNames() const {
  const CUtils utils;
  const CWideString portName = PortName();
  const auto database = OpenComDatabase();
  AddTool(Control(IDC_DEVICE_COM_NUMBER));
  utils.FillStringCombo(Control(IDC_DEVICE_COM_NUMBER), utils.BuildComNameList(database.Get(), portName),
                        portName);
}

// Kept on purpose: help topics
const wchar_t* CDeviceAdvSettingPage::HelpTopic() const {
  const bool rs485 = IsRs422485Port(busSet_.PortType, busSet_.SerialPortIndex);
  return rs485 ? kHelpTopic485 : kHelpTopic;
}

LRESULT CDeviceAdvSettingPage::OnApply() {
  if (!ReadBusSet()) return PSNRET_NOERROR;
  const CWideString portName = PortName();
  if (EnteredSwitches() != SwitchesOf(busSet_) && !SaveSwitches(portName)) return PSNRET_INVALID;
  const CWideString newName = SelectedComName();
  // Without a selection there is nothing to rename to.
  if (newName.IsEmpty() || newName == portName) return PSNRET_NOERROR;
  return Rename(newName) ? PSNRET_NOERROR : PSNRET_INVALID;
}

DeviceSwitches CDeviceAdvSettingPage::EnteredSwitches() const noexcept {
  return {.connectOffline = IsChecked(IDC_DEVICE_CONNECT_OFFLINE),
          .highPerformance = IsChecked(IDC_DEVICE_HIGH_PERFORMANCE)};
}

// A rename that follows asks once more. Kept on purpose: renaming text
bool CDeviceAdvSettingPage::SaveSwitches(const CWideString& portName) {
  if (!IsPortOpenable(portName) &&
      ShowMessage(IDS_PORT_OPEN_RENAME, L"Warning!", MB_YESNO | MB_ICONINFORMATION) == IDNO) {
    static_cast<void>(ReadBusSet());
    return false;
  }
  ApplySwitches(busSet_, EnteredSwitches());
  // A driver that refuses keeps its old switches; the COM number is changed all the same.
  static_cast<void>(WriteBusSet());
  return true;
}

CWideString CDeviceAdvSettingPage::SelectedComName() const {
  const HWND combo = Control(IDC_DEVICE_COM_NUMBER);
  const auto index = static_cast<WPARAM>(SendMessageW(combo, CB_GETCURSEL, 0, 0));
  const LRESULT length = SendMessageW(combo, CB_GETLBTEXTLEN, index, 0);
  if (length <= 0) return {};  // CB_ERR without a selection
  std::wstring entry(static_cast<std::size_t>(length), L'\0');
  SendMessageW(combo, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(entry.data()));
  return ChosenComName(entry);
}

bool CDeviceAdvSettingPage::Rename(const CWideString& newName) {
  CCOMPortUtil port(DeviceSet(), DeviceElement());
  if (RenamePortForUser(port, newName, Window()) != 0) return true;
  static_cast<void>(ShowMessage(IDS_RENAME_FAILED, L"Error", MB_ICONHAND));
  static_cast<void>(ReadBusSet());
  return false;
}
