// Keeping the settings of a device server's ports while its driver is installed again. Windows only.
//
// Installing a device server removes its ports, and the bus driver finds them again afterwards. What a port
// had in its hardware key waits meanwhile below the server's own:
//
//   ...\Enum\<server>\Device Parameters\<backup key name>       the port's REG_DWORD values and "PortName"
//   ...\Enum\<server>\Device Parameters\<backup key name>\UI1   the property pages' REG_DWORD and REG_SZ
//
// A key or value that cannot be opened, read or written is left out; nothing is reported.
#pragma once

#include <windows.h>

#include <setupapi.h>

// Saves the settings of every child of the device server. A child whose values cannot be read leaves an
// empty backup, which still marks it as a port that was there before. Kept on purpose: empty backup
void BackupChildPortSettings(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& server);

// Brings the settings and the COM name of a port back and deletes the backup. True when there was one.
[[nodiscard]] bool RestorePortSettings(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);
