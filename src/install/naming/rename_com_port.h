// Moving a port to another COM name. Windows only.
//
// The name of a port lives in five places: the COM name database (which numbers are taken), the DOS device
// that points at the port's kernel device, the SERIALCOMM map (kernel device to COM name), the value
// "PortName" in the port's hardware key, and the friendly name, which shows the name in brackets.
// RenameComPort is the only way in which the system changes a name. All of this needs administrator rights.
#pragma once

#include <windows.h>

#include "base/wide_string.h"
#include "install/naming/com_port_util.h"

// Moves the DOS device and the SERIALCOMM entry from one name to the other. 1 on success. 0 when a step
// failed: if the new DOS device could not be made, the old one is there again; if only the map could not be
// written, the DOS device keeps the new name.
[[nodiscard]] int RenameDosDeviceAndSerialComm(const CWideString& oldName, const CWideString& newName);

// Moves a port to another COM name, in all five places, and writes the new name's default settings.
//
// Asks (message box owned by `owner`, which may be null) when the new number is taken and, if `interactive`,
// when another program has the port open. With `reenumerate` the device tree is enumerated again at the end.
// The new name is not checked. The COM name database is open while the question about a taken number is up.
//
// Returns 1 when the port was renamed or the user declined, 0 when a step failed. Steps before the failing
// one stay done, so that a port never loses its DOS device on the way. Kept on purpose: own name asks
int RenameComPort(CCOMPortUtil& port, const CWideString& newName, HWND owner, bool interactive,
                  bool reenumerate);

// The same for programs without windows: a taken number, the port's own included, is a step that fails and
// changes nothing. Open ports are renamed. The device tree is not enumerated again.
[[nodiscard]] int RenameComPortUnasked(CCOMPortUtil& port, const CWideString& newName);

// The two ways in which the system calls it. On behalf of a user: asks about a port in use as well, and
// Device Manager shows the new name at once.
inline int RenamePortForUser(CCOMPortUtil& port, const CWideString& newName, HWND owner) {
  return RenameComPort(port, newName, owner, true, true);
}

// While devices are being installed: the installer enumerates afterwards, and only a taken number is asked
// about.
inline int RenamePortAsInstaller(CCOMPortUtil& port, const CWideString& newName) {
  return RenameComPort(port, newName, nullptr, false, false);
}
