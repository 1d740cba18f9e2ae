// The exports for management programs that concern installation. Windows only.
#pragma once

#include <windows.h>

// Renames the port with this instance id, asking the user where that is risky. 1 when the device could be
// found, otherwise 0; a null id is never found, a null name is the empty one.
[[nodiscard]] BOOL ChangeComNumber(const wchar_t* instanceId, const wchar_t* newName);

// Installs the driver of the INF file on all present devices with this hardware id, also over a better one.
// FALSE when one of the two is null or Windows refuses.
[[nodiscard]] BOOL UpdateDriver(const wchar_t* hardwareId, const wchar_t* infPath);
