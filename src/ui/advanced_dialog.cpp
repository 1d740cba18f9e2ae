#include "ui/advanced_dialog.h"

#include "install/devices/device_reg_info.h"
#include "install/devices/ports_class.h"

CAdvancedDialog::CAdvancedDialog(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element)
    : rs422485Page_(deviceInfoSet, element),
      devicePage_(deviceInfoSet, element),
      tcpIpPage_(deviceInfoSet, element) {
  CWideString portName;  // stays empty when it cannot be read
  static_cast<void>(CKDDeviceRegInfo(deviceInfoSet, element).GetRegString(kPortName, portName));
  SetCaption(CWideString(L"Advanced Settings for ") + portName.View());
  AddPage(devicePage_);
  AddPage(tcpIpPage_);
  AddPage(aboutPage_);
}
