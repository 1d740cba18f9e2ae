// The exports for management programs that concern installation. Windows only.
//
// include/kdui10.h is their contract. Here std::bad_alloc may be thrown; the exports turn it into failure.
#pragma once

#include <windows.h>

// Renames the port with this instance id among the present devices, and asks the user when another program
// has it open or the name is taken (RenamePortForUser, without an owner window). 1 when the device was found,
// otherwise 0; a null id is never found, a null name is the empty one. Kept on purpose: result of a rename
[[nodiscard]] BOOL ChangeComNumber(const wchar_t* instanceId, const wchar_t* newName);

// Installs the driver of the INF file on all present devices with this hardware id, also over a better one.
// `infPath` is a full path. FALSE when one of the two is null or Windows refuses. Whether Windows wants a
// restart of the computer is not reported.
[[nodiscard]] BOOL UpdateDriver(const wchar_t* hardwareId, const wchar_t* infPath);
// The same with further INSTALLFLAG_* flags; `restartNeeded` is reported when it succeeds.
[[nodiscard]] BOOL UpdateDriver(const wchar_t* hardwareId, const wchar_t* infPath, DWORD moreFlags,
                                BOOL& restartNeeded);
