// COM names in the order of a device server's ports. Windows only.
#pragma once

#include "install/naming/com_port_util.h"

// Brings the COM numbers of all ports of the port's device server into enumeration order (sort_plan.h), once
// for each device server: its value "ChildPortNameSorted" is 1 from then on. Nothing happens before all its
// ports are started and have names; the installation of the next port tries again.
//
// A server with renamed ports is restarted, so that each comes up under its new name. A rename that fails
// ends the sorting, and the server is neither marked nor restarted. Always 1. The caller holds the
// installation's mutex: two threads must not sort the ports of one server.
int SortChildPortNames(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& port);

// Gives back the COM number of a port that is removed. The DOS device of its name goes first; when there is
// none or it cannot be removed, the number stays taken, because it may be another port's. False only when the
// port has no name.
bool ReleasePortName(CCOMPortUtil& port);
