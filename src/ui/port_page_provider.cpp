#include "ui/port_page_provider.h"

#include <memory>

#include "ui/port_page.h"

bool AddPortPage(const SP_PROPSHEETPAGE_REQUEST* request, LPFNADDPROPSHEETPAGE addPage, LPARAM lParam) {
  if (request == nullptr) return false;
  if (request->PageRequested != SPPSR_ENUM_ADV_DEVICE_PROPERTIES) return true;
  if (request->DeviceInfoSet == nullptr || request->DeviceInfoData == nullptr || addPage == nullptr) {
    return false;
  }
  auto page = std::make_shared<CKdUIPropertyPage>(request->DeviceInfoSet, *request->DeviceInfoData);
  if (!page->IsUsable()) return false;
  const HPROPSHEETPAGE handle = CPropertyPageImpl::CreateOwned(std::move(page));
  return handle != nullptr && addPage(handle, lParam);
}
