// The settings that programs find for a COM name, under Windows' own Ports key. Windows only.
#pragma once

#include "base/wide_string.h"
#include "install/devices/device_reg_info.h"

// Writes the settings of a COM name, such as "9600,n,8,1", as the value "COM7:". False when the registry
// refuses; needs administrator rights. Throws std::bad_alloc when memory runs out, as the two below.
bool WritePortsSettings(const CWideString& comName, const CWideString& settings);

// Write "9600,n,8,1", which a port starts with, for the port's present name; nothing when the name cannot be
// read. Failure is not reported. The page's own order of fields differs. Kept on purpose: two orders
void WritePortsDefault(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);
void WritePortsDefault(const CKDDeviceRegInfo& port);
