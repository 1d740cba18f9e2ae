#include "ui/port_settings_page.h"

CPortSettingsPage::CPortSettingsPage(WORD dialogId, const wchar_t* title, HDEVINFO set,
                                     const SP_DEVINFO_DATA& element)
    : CPropertyPageImpl(dialogId, title),
      CKdUserModeConfig(set, element),
      element_(element),
      registry_(set, element),
      parent_(set, element_),
      usable_(Open()) {}

bool CPortSettingsPage::Open() {
  return FindDeviceInterface() && ReadPortSet() && parent_.FindParentDevice() && ReadBusSet();
}

CWideString CPortSettingsPage::PortName() const {
  CWideString name;
  if (!registry_.GetRegString(L"PortName", name)) return {};
  return name;
}

void CPortSettingsPage::SetControlText(int control, UINT stringId) const {
  CWideString text;
  text.LoadFromTable(stringId);
  SetDlgItemTextW(Window(), control, text.Text());
}

int CPortSettingsPage::Ask(UINT stringId, const wchar_t* caption, UINT style) const {
  CWideString text;
  text.LoadFromTable(stringId);
  return MessageBoxW(Window(), text.Text(), caption, style);
}

bool CPortSettingsPage::IsChecked(int control) const noexcept {
  return SendDlgItemMessageW(Window(), control, BM_GETCHECK, 0, 0) == BST_CHECKED;
}
