#include "install/management.h"

#include <newdev.h>

#include "install/devices/class_installer.h"
#include "install/naming/rename_com_port.h"

BOOL ChangeComNumber(const wchar_t* instanceId, const wchar_t* newName) {
  if (instanceId == nullptr) return 0;
  CDeviceInfoList devices;
  SP_DEVINFO_DATA element;
  if (!OpenAllDevices(devices, DIGCF_PRESENT | DIGCF_ALLCLASSES) ||
      !OpenDeviceInfo(devices.Get(), instanceId, element, DIOD_INHERIT_CLASSDRVS | DIOD_CANCEL_REMOVE)) {
    return 0;
  }
  CCOMPortUtil port(devices.Get(), element);
  // Kept on purpose: result of a rename
  RenamePortForUser(port, CWideString(newName), nullptr);
  return 1;
}

BOOL UpdateDriver(const wchar_t* hardwareId, const wchar_t* infPath) {
  BOOL restartNeeded = FALSE;
  return UpdateDriver(hardwareId, infPath, 0, restartNeeded);
}

BOOL UpdateDriver(const wchar_t* hardwareId, const wchar_t* infPath, DWORD moreFlags, BOOL& restartNeeded) {
  if (hardwareId == nullptr || infPath == nullptr) return FALSE;
  return UpdateDriverForPlugAndPlayDevicesW(nullptr, hardwareId, infPath, INSTALLFLAG_FORCE | moreFlags,
                                            &restartNeeded) != FALSE;
}
