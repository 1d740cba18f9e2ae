// Moving a port to another COM name. Windows only.
//
// The name of a port lives in five places: the COM name database (which numbers are taken), the DOS device
// that points at the port's kernel device, the SERIALCOMM map (kernel device to COM name), the value
// "PortName" in the port's hardware key, and the friendly name, which shows the name in brackets.
// RenameComPort is the only way in which the system changes a name.
#pragma once

#include <windows.h>

#include "base/wide_string.h"
#include "install/naming/com_port_util.h"

// Moves the DOS device and the SERIALCOMM entry from one name to the other. 1 on success. 0 when a step
// failed: before the new DOS device exists everything is as it was; when only the map could not be written,
// the DOS device keeps the new name.
[[nodiscard]] int RenameDosDeviceAndSerialComm(const CWideString& oldName, const CWideString& newName);

// Moves a port to another COM name, in all five places, and writes the new name's default settings.
//
// Asks (message box owned by `owner`, which may be null) when the new number is taken and, if `interactive`,
// when the port is open somewhere. With `reenumerate` the device tree is enumerated again at the end.
// Returns 1 when the port was renamed or the user declined, 0 when a step failed; what was done before the
// failing step stays done, so that a port never loses its DOS device on the way.
int RenameComPort(CCOMPortUtil& port, const CWideString& newName, HWND owner, bool interactive,
                  bool reenumerate);
