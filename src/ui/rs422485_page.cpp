#include "ui/rs422485_page.h"

#include <dbt.h>

#include "base/resource_ids.h"
#include "install/devices/port_in_use.h"
#include "install/devices/ports_class.h"
#include "status/utils.h"
#include "ui/device_rules.h"

namespace {

constexpr HelpId kHelpIds[] = {
    {IDC_RS422485_DUPLEX, 0x806B034E},
    {IDC_RS422485_RESTORE_DEFAULTS, 0x806B037C},
    kEndOfHelpIds,
};

constexpr ControlText kTexts[] = {{IDC_RS422485_NOTE, IDS_DUPLEX_NOTE}};

constexpr ToolTipText kTips[] = {{IDC_RS422485_DUPLEX, IDS_TIP_DUPLEX}};

constexpr PageTables kTables{
    .texts = kTexts, .tips = kTips, .otherTip = IDS_TIP_RESTORE_DEFAULTS, .helpIds = kHelpIds};

// Reports to all programs that ports have changed. With BSF_QUERY one that answers FALSE ends the round,
// which does not count as a failure.
void BroadcastPortChange() noexcept {
  DEV_BROADCAST_DEVICEINTERFACE_W change{};
  static_assert(sizeof(change) == 32);
  change.dbcc_size = sizeof(change);
  change.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
  change.dbcc_classguid = kPortsClass;
  BroadcastSystemMessageW(BSF_QUERY, nullptr, WM_DEVICECHANGE, DBT_CUSTOMEVENT,
                          reinterpret_cast<LPARAM>(&change));
}

}  // namespace

CRS422485Page::CRS422485Page(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element)
    : CPortPageBase(IDD_RS422485_PAGE, MAKEINTRESOURCEW(IDS_RS422485_TITLE), kTables, deviceInfoSet,
                    element) {}

void CRS422485Page::OnInitDialog() {
  SetTexts();
  CPortPageBase::OnInitDialog();
  SetUpBalloon();
  for (const int control : {IDC_RS422485_DUPLEX, IDC_RS422485_RESTORE_DEFAULTS}) AddTool(Control(control));
  ShowDuplexModes();
}

bool CRS422485Page::OnClicked(int control) {
  if (control != IDC_RS422485_RESTORE_DEFAULTS) return CPortPageBase::OnClicked(control);
  RestoreDefaults();
  return true;
}

void CRS422485Page::ShowDuplexModes() const {
  const CUtils utils;
  utils.FillChoiceCombo(Control(IDC_RS422485_DUPLEX),
                        utils.LoadChoiceList(IDS_DUPLEX_CHOICES, portSet_.SupportedDuplexModes),
                        static_cast<std::int32_t>(portSet_.DuplexMode), false);
}

void CRS422485Page::RestoreDefaults() {
  CKdUVcpUserModeInterface defaults;
  if (!GetDefaultParameterSet(defaults, CKdUVcpUserModeInterface::kSelector)) return;
  portSet_.DuplexMode = RestoredDuplexMode(defaults.DuplexMode);
  ShowDuplexModes();
}

LRESULT CRS422485Page::OnApply() {
  const HWND combo = Control(IDC_RS422485_DUPLEX);
  const std::int32_t chosen = CUtils().GetSelectedItemData(&combo);
  if (chosen != CB_ERR) portSet_.DuplexMode = static_cast<std::uint32_t>(chosen);  // kept without a selection
  // Kept on purpose: renaming text
  if (!IsPortOpenable(PortName()) &&
      ShowMessage(IDS_PORT_OPEN_RENAME, L"Warning!", MB_YESNO | MB_ICONINFORMATION) == IDNO) {
    static_cast<void>(ReadPortSet());
    return PSNRET_INVALID;
  }
  if (!WritePortSet()) {
    static_cast<void>(ReadPortSet());
    return PSNRET_INVALID;
  }
  BroadcastPortChange();
  return PSNRET_NOERROR;
}
