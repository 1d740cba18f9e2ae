// The settings that programs find for a COM name, under Windows' own Ports key. Windows only.
#pragma once

#include "base/wide_string.h"
#include "install/devices/device_reg_info.h"

// Writes the settings of a COM name, as "9600,n,8,1". False when the registry refuses; needs administrator
// rights.
bool WritePortsSettings(const CWideString& comName, const CWideString& settings);

// Writes "9600,n,8,1" for the port's present name; nothing when the name cannot be read.
void WritePortsDefault(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);
void WritePortsDefault(const CKDDeviceRegInfo& port);
