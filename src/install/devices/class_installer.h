// Calls to the class installer and the lists of devices that they work on. Windows only.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include "base/device_handles.h"
#include "base/wide_string.h"

// Disable, respectively enable, a device by a property change. First for all hardware profiles, then, when
// that is refused, for the current one. Failure is not reported: always 1. A restart of a device is
// DisableDevice followed by EnableDevice on the same element.
int DisableDevice(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element);
int EnableDevice(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element);

// Tells the set that a change of the device's properties still has to take effect, so that whoever owns the
// set (Device Manager, above all) restarts the device when it is done. Always 1.
int MarkPropChangePending(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element);

// Lets the configuration manager enumerate again below the device with this instance id; below the root of
// the device tree when the id is empty. 1 on success, otherwise 0.
int ReenumerateDevNode(const CWideString& instanceId);

// All devices, respectively the devices of one setup class, with DIGCF_* flags. Without DIGCF_ALLCLASSES
// Windows wants a class. On failure `deviceInfoSet` is empty and false returned.
[[nodiscard]] bool OpenAllDevices(CDeviceInfoList& deviceInfoSet, DWORD flags);
[[nodiscard]] bool OpenClassDevices(CDeviceInfoList& deviceInfoSet, const GUID& classGuid, DWORD flags);

// Opens the device with this instance id into `deviceInfoSet` (DIOD_* flags); `element` is initialised here.
[[nodiscard]] bool OpenDeviceInfo(HDEVINFO deviceInfoSet, const wchar_t* instanceId, SP_DEVINFO_DATA& element,
                                  DWORD flags);
