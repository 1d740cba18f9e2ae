#include "workbench/rig/open_sheet.h"

#include <commctrl.h>
#include <prsht.h>

#include "workbench/rig/page_controls.h"

namespace workbench {

std::wstring OpenSheet::Caption() const {
  return TextOf(window_);
}

std::vector<std::wstring> OpenSheet::Tabs() const {
  const HWND tabs = PropSheet_GetTabControl(window_);
  std::vector<std::wstring> titles;
  for (int index = 0; index < TabCtrl_GetItemCount(tabs); ++index) {
    wchar_t text[64] = L"";
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = 64;
    SendMessageW(tabs, TCM_GETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    titles.emplace_back(text);
  }
  return titles;
}

HWND OpenSheet::Turn(int tab) const {
  PropSheet_SetCurSel(window_, nullptr, tab);
  return PropSheet_GetCurrentPageHwnd(window_);
}

void OpenSheet::PressOk() const {
  SendMessageW(window_, PSM_PRESSBUTTON, PSBTN_OK, 0);
}

void OpenSheet::PressCancel() const {
  SendMessageW(window_, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
}

}  // namespace workbench
