// What the device installer calls for every step of installing a device. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

// The steps of a device server and of one of its ports. `device` and, for DIF_INSTALLDEVICE, `context` may
// be null, which does nothing and returns NO_ERROR. Steps are best effort: what fails inside ends that step
// and does not change the result. One exception: memory that runs out while the settings of a device server's
// ports are saved is thrown, for without that step its ports must not be removed.
[[nodiscard]] DWORD CoInstallDeviceServer(DI_FUNCTION function, HDEVINFO deviceInfoSet,
                                          SP_DEVINFO_DATA* device, const COINSTALLER_CONTEXT_DATA* context);
[[nodiscard]] DWORD CoInstallPort(DI_FUNCTION function, HDEVINFO deviceInfoSet, SP_DEVINFO_DATA* device,
                                  const COINSTALLER_CONTEXT_DATA* context);
