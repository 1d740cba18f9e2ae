// Keeping the settings of a device server's ports while its driver is installed again. Windows only.
//
// Installing a device server removes its ports, and the bus driver finds them again afterwards. Meanwhile the
// values of a port's hardware key are kept below the server's own:
//
//   ...\Enum\<server>\Device Parameters\<backup key name>       the port's REG_DWORD values and "PortName"
//   ...\Enum\<server>\Device Parameters\<backup key name>\UI1   the property pages' REG_DWORD and REG_SZ
//
// A key or value that cannot be opened, read or written is left out; nothing is reported. Both functions
// throw std::bad_alloc when memory runs out. The device information sets are borrowed.
#pragma once

#include <windows.h>

#include <setupapi.h>

// Saves the settings of every child of the device server. The children need not be started. A child whose
// values cannot be read leaves an empty backup, which still marks it as a port that was there before.
// Kept on purpose: empty backup
void BackupChildPortSettings(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& server);

// Writes a port's saved settings back, except what the new driver says about its hardware
// (IsCapabilityValue), renames the port to its saved name, which may ask the user, and deletes the backup.
// True when there was one, whatever of it could be restored. Kept on purpose: unanswered question
[[nodiscard]] bool RestorePortSettings(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& port);
