#include "config/parent_device.h"

#include "config/device_interface.h"
#include "install/devices/class_installer.h"

static_assert(sizeof(SP_DEVINFO_DATA) == 32);

bool CKdSetupDi_ParentDevice::FindParentDevice() {
  if (!OpenAllDevices(devices_, DIGCF_PRESENT | DIGCF_ALLCLASSES)) {
    ReportClassDevsFailure();
    return false;
  }
  DEVINST parent = 0;
  if (CM_Get_Parent(&parent, child_.DevInst, 0) != CR_SUCCESS) return false;
  parent_ = {};
  parent_.cbSize = sizeof(parent_);
  for (DWORD index = 0; SetupDiEnumDeviceInfo(devices_.Get(), index, &parent_); ++index) {
    if (parent_.DevInst == parent) return true;
  }
  return false;
}
