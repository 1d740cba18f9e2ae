// Calls to the class installer and the lists of devices that they work on. Windows only.
//
// Sets and elements are borrowed; an element belongs to the set that is passed with it. The int results are
// the fixed interface of these operations. Any thread, one at a time for one device information set.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include "base/device_handles.h"
#include "base/wide_string.h"

// Disable, respectively enable, a device by a property change: for all hardware profiles or, when that is
// refused, for the current one. Both block until the class installer has finished and need administrator
// rights. Failure is not reported: always 1. A restart of a device is DisableDevice followed by EnableDevice
// on the same element.
int DisableDevice(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element);
int EnableDevice(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element);

// Marks in the set that a change of the device's properties still has to take effect, so that the set's
// owner, usually Device Manager, restarts the device when it is done with it. Always 1.
int MarkPropChangePending(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element);

// Lets the configuration manager enumerate again below the device with this instance id, or below the root of
// the device tree when the id is empty. Returns when the enumeration is done: 1 on success, otherwise 0.
int ReenumerateDevNode(const CWideString& instanceId);

// Open the set of all devices, respectively of the devices of one setup or interface class; `flags` are
// DIGCF_*, and OpenAllDevices needs DIGCF_ALLCLASSES among them. On failure `deviceInfoSet` is empty and
// false returned, with the thread's last error set.
[[nodiscard]] bool OpenAllDevices(CDeviceInfoList& deviceInfoSet, DWORD flags);
[[nodiscard]] bool OpenClassDevices(CDeviceInfoList& deviceInfoSet, const GUID& classGuid, DWORD flags);

// Opens the device with this instance id into `deviceInfoSet`; `flags` are DIOD_*. `element` is initialised
// here, and is valid for as long as the set when the result is true.
[[nodiscard]] bool OpenDeviceInfo(HDEVINFO deviceInfoSet, const wchar_t* instanceId, SP_DEVINFO_DATA& element,
                                  DWORD flags);
