// The export that Device Manager calls.
#include "base/export_guard.h"
#include "kdui10.h"
#include "ui/port_page_provider.h"

extern "C" BOOL CALLBACK KdUPortPropPage(PSP_PROPSHEETPAGE_REQUEST request, LPFNADDPROPSHEETPAGE addPage,
                                         LPARAM lParam) {
  return GuardBoundary(FALSE, [&] { return AddPortPage(request, addPage, lParam) ? TRUE : FALSE; });
}
