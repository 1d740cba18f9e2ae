#include "ui/advanced_dialog.h"

#include "install/devices/device_reg_info.h"
#include "install/devices/ports_class.h"

CAdvancedDialog::CAdvancedDialog(HDEVINFO set, const SP_DEVINFO_DATA& element)
    : rs422485Page_(set, element), devicePage_(set, element), tcpIpPage_(set, element) {
  CWideString portName;  // stays empty when it cannot be read
  static_cast<void>(CKDDeviceRegInfo(set, element).GetRegString(kPortName, portName));
  SetCaption(CWideString(L"Advanced Settings for ") + portName.View());
  AddPage(devicePage_);
  AddPage(tcpIpPage_);
  AddPage(aboutPage_);
}
