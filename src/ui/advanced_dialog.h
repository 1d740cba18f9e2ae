// The sheet "Advanced Settings for COMn". Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include <cstdint>

#include "ui/about_page.h"
#include "ui/device_page.h"
#include "ui/framework/property_sheet.h"
#include "ui/rs422485_page.h"
#include "ui/tcp_ip_page.h"

// The less common settings of a port: device, TCP/IP and About. DoModal shows it (CPropertySheetImpl). To be
// made for one showing, on the thread that shows it.
//
// Every page reads the drivers on its own when the sheet is made; one that cannot shows the initial values.
// The device information set is borrowed and outlives the sheet; the element is copied.
class CAdvancedDialog : public CPropertySheetImpl {
 public:
  CAdvancedDialog(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);

  // The duplex mode as the RS422/485 page read it when the sheet was made. Kept on purpose: hidden page
  [[nodiscard]] std::uint32_t Rs485DuplexMode() const noexcept { return rs422485Page_.DuplexMode(); }

 private:
  CRS422485Page rs422485Page_;
  CDeviceAdvSettingPage devicePage_;
  CAboutPage aboutPage_;
  CTcpIpSettingsPage tcpIpPage_;
};
