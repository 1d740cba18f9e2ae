// What the device installer calls for every step of installing a device. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

// Both act on DIF_INSTALLDEVICE, DIF_REMOVE and DIF_UPDATEDRIVER_UI; every other function returns NO_ERROR.
// The device is the installer's and is only borrowed. `device` and, for DIF_INSTALLDEVICE, `context` may be
// null, which does nothing and returns NO_ERROR.
//
// An installation has two passes: before it, which returns ERROR_DI_POSTPROCESSING_REQUIRED so that the
// second follows, and after it, which returns the result that the installer passes. An update from Device
// Manager is refused with ERROR_DI_DONT_INSTALL, and a message box, when the device's value "NoUpgrade"
// forbids it.
//
// Steps are best effort: a failure inside ends that step and does not change the result. One exception:
// memory that runs out while the settings of a device server's ports are saved is thrown (std::bad_alloc),
// because its ports must not be removed then. The calls come on the installer's thread; the second pass of a
// port waits for those of other ports, in any process.

// The steps of a device server: its ports are saved and removed before, and removed again after.
[[nodiscard]] DWORD CoInstallDeviceServer(DI_FUNCTION function, HDEVINFO deviceInfoSet,
                                          SP_DEVINFO_DATA* device, const COINSTALLER_CONTEXT_DATA* context);

// The steps of one port: its saved settings and name come back, or its server's ports are sorted by name.
[[nodiscard]] DWORD CoInstallPort(DI_FUNCTION function, HDEVINFO deviceInfoSet, SP_DEVINFO_DATA* device,
                                  const COINSTALLER_CONTEXT_DATA* context);
