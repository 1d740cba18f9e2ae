#include "ui/port_page_base.h"

#include "base/resource_ids.h"
#include "install/devices/ports_class.h"
#include "ui/framework/picture_link.h"

namespace {

constexpr int kHelpLink = IDC_PORT_HELP_LINK;  // on every page

}  // namespace

CPortPageBase::CPortPageBase(WORD dialogId, const wchar_t* title, const PageTables& tables,
                             HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element)
    : CPropertyPageImpl(dialogId, title),
      CKdUserModeConfig(deviceInfoSet, element),
      tables_(tables),
      element_(element),
      registry_(deviceInfoSet, element),
      parent_(deviceInfoSet, element_),
      usable_(Open()) {}

bool CPortPageBase::Open() {
  return FindDeviceInterface() && ReadPortSet() && parent_.FindParentDevice() && ReadBusSet();
}

CWideString CPortPageBase::PortName() const {
  CWideString name;
  if (!registry_.GetRegString(kPortName, name)) return {};
  return name;
}

void CPortPageBase::OnInitDialog() {
  background_.Create();
  MakePictureLink(Control(kHelpLink));
}

void CPortPageBase::SetTexts() const {
  for (const ControlText& row : tables_.texts) {
    CWideString text;
    text.LoadFromTable(row.stringId);
    SetDlgItemTextW(Window(), row.control, text.Text());
  }
}

bool CPortPageBase::OnHelp(const HELPINFO& request) {
  ShowContextHelp(request, tables_.helpIds);
  return true;
}

bool CPortPageBase::OnClicked(int control) {
  if (control != kHelpLink) return false;
  ShowHelpTopic(Window(), HelpTopic());
  return true;
}

bool CPortPageBase::OnToolTipText(NMTTDISPINFOW& request) {
  AnswerText(request, tables_.tips, tables_.otherTip);
  return true;
}

int CPortPageBase::ShowMessage(UINT stringId, const wchar_t* caption, UINT style) const {
  CWideString text;
  text.LoadFromTable(stringId);
  return MessageBoxW(Window(), text.Text(), caption, style);
}

bool CPortPageBase::IsChecked(int control) const noexcept {
  return SendDlgItemMessageW(Window(), control, BM_GETCHECK, 0, 0) == BST_CHECKED;
}
