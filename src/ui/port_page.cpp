#include "ui/port_page.h"

#include "base/resource_ids.h"

namespace {

struct ControlText {
  int control;
  UINT stringId;
};

// In the order in which they are set. The note on overriding has no control in the dialog.
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

// The baud rate row has no tip: its meaning needs no explanation, unlike what an override of the others does.
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

// Made tools once more, so that the tip follows them also where a child window is not enumerated.
constexpr int kTools[] = {IDC_PORT_BAUD_RATE_LABEL, IDC_PORT_DATA_BITS_LABEL,    IDC_PORT_PARITY_LABEL,
                          IDC_PORT_STOP_BITS_LABEL, IDC_PORT_FLOW_CONTROL_LABEL, IDC_PORT_ADVANCED,
                          IDC_PORT_RESTORE_DEFAULTS};

}  // namespace

CKdUIPropertyPage::CKdUIPropertyPage(HDEVINFO set, const SP_DEVINFO_DATA& element)
    : CPortSettingsPage(IDD_PORT_PAGE, MAKEINTRESOURCEW(IDS_PORT_SETTINGS_TITLE), set, element) {}

void CKdUIPropertyPage::OnInitDialog() {
  background_.Create();
  SetTexts();
  SetUpTips();
}

bool CKdUIPropertyPage::OnToolTipText(NMTTDISPINFOW& request) {
  AnswerText(request, kTips);
  return true;
}

void CKdUIPropertyPage::SetTexts() const {
  for (const ControlText& row : kTexts) SetControlText(row.control, row.stringId);
}

void CKdUIPropertyPage::SetUpTips() const {
  SetUpBalloon();
  for (const int control : kTools) AddTool(Control(control));
}
