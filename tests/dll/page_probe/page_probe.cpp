// The RS422/485 page, which the product makes and never shows, in a sheet of its own.
#include <windows.h>

#include <setupapi.h>

#include "base/export_guard.h"
#include "base/module_instance.h"
#include "ui/framework/property_sheet.h"
#include "ui/rs422485_page.h"

namespace {

class Rs422485Sheet : public CPropertySheetImpl {
 public:
  Rs422485Sheet(HDEVINFO set, const SP_DEVINFO_DATA& element) : page_(set, element) { AddPage(page_); }

 private:
  CRS422485Page page_;
};

}  // namespace

extern "C" {

__declspec(dllexport) INT_PTR ShowRs422485Sheet(HDEVINFO set, SP_DEVINFO_DATA* element) {
  return GuardBoundary(INT_PTR{-2}, [&] { return Rs422485Sheet(set, *element).DoModal(nullptr); });
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) SetModuleInstance(instance);
  return TRUE;
}
}
