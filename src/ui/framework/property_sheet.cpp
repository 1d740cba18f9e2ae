#include "ui/framework/property_sheet.h"

#include <commctrl.h>

#include "base/module_instance.h"

INT_PTR CPropertySheetImpl::DoModal(HWND owner) {
  const CActivationScope scope(activation_);
  std::vector<HPROPSHEETPAGE> handles;
  if (!CreatePages(handles)) return -1;
  const PROPSHEETHEADERW header = Header(owner, handles);
  return PropertySheetW(&header);  // which releases the pages, however it ends
}

bool CPropertySheetImpl::CreatePages(std::vector<HPROPSHEETPAGE>& handles) {
  handles.reserve(pages_.size());
  for (CPropertyPageImpl* page : pages_) {
    const HPROPSHEETPAGE handle = page->Create();
    if (handle == nullptr) {
      for (const HPROPSHEETPAGE made : handles) DestroyPropertySheetPage(made);
      return false;
    }
    handles.push_back(handle);
  }
  return true;
}

PROPSHEETHEADERW CPropertySheetImpl::Header(HWND owner, std::vector<HPROPSHEETPAGE>& handles) const noexcept {
  PROPSHEETHEADERW header{};
  header.dwSize = sizeof(header);
  header.dwFlags = PSH_USECALLBACK | PSH_NOAPPLYNOW | PSH_PROPTITLE;
  header.hwndParent = owner;
  header.hInstance = ModuleInstance();
  header.pszCaption = caption_.Text();
  header.nPages = static_cast<UINT>(handles.size());
  header.phpage = handles.data();
  header.pfnCallback = &CPropertySheetImpl::SheetCallback;
  return header;
}

// Adds nothing to what Windows does.
int CALLBACK CPropertySheetImpl::SheetCallback(HWND, UINT, LPARAM) {
  return 0;
}
