// The exports around installation: the two co-installers, and the renaming and the driver update that
// management programs ask for. What they do is in install/; here is only the boundary.
#include <kdui10.h>

#include "base/export_guard.h"
#include "install/co_installer.h"
#include "install/management.h"

extern "C" DWORD CALLBACK KdUCoInstallCard(DI_FUNCTION installFunction, HDEVINFO deviceInfoSet,
                                           PSP_DEVINFO_DATA deviceInfoData,
                                           PCOINSTALLER_CONTEXT_DATA context) {
  return GuardBoundary<DWORD>(NO_ERROR, [&] {
    return CoInstallDeviceServer(installFunction, deviceInfoSet, deviceInfoData, context);
  });
}

extern "C" DWORD CALLBACK KdUCoInstallPort(DI_FUNCTION installFunction, HDEVINFO deviceInfoSet,
                                           PSP_DEVINFO_DATA deviceInfoData,
                                           PCOINSTALLER_CONTEXT_DATA context) {
  return GuardBoundary<DWORD>(
      NO_ERROR, [&] { return CoInstallPort(installFunction, deviceInfoSet, deviceInfoData, context); });
}

extern "C" BOOL WINAPI KdChangeComNumber(PCWSTR deviceInstanceId, PCWSTR newComName) {
  return GuardBoundary<BOOL>(FALSE, [&] { return ChangeComNumber(deviceInstanceId, newComName); });
}

extern "C" BOOL WINAPI KdUpdateDriver(PCWSTR hardwareId, PCWSTR infFullPath) {
  return GuardBoundary<BOOL>(FALSE, [&] { return UpdateDriver(hardwareId, infFullPath); });
}
