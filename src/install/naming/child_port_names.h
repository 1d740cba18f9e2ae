// COM names in the order of a device server's ports. Windows only.
#pragma once

#include "install/naming/com_port_util.h"

// Brings the COM numbers of all ports of the port's device server into enumeration order, once per device
// server: its value "ChildPortNameSorted" then stays 1. Nothing happens before all its ports are started
// and have names; the installation of the next port tries again. A server with renamed ports is restarted,
// so that each comes up under its new name. Always 1.
int SortChildPortNames(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& port);

// Gives a port's COM number back. That happens only where the port's name still had its DOS device, which
// goes first: a number whose device is not ours to remove may be another's. False when the port has no name.
bool ReleasePortName(CCOMPortUtil& port);
