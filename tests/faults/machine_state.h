// What of a simulated host outlives a process, as Windows' own state does.
#pragma once

#include <windows.h>

#include "workbench/machine/machine.h"

namespace workbench {

// The registry outlives a process that removes nothing at its end; what the kernel keeps beside it, DOS
// device names and which of a server's ports are there, is put into the registry.
void KeepState(Machine& machine, const DeviceServer& server);

// A host that was built like the one of the ended process becomes what that one was when it called KeepState.
// Devices beyond the server and its ports are taken to be the same. Throws std::runtime_error when there is
// nothing kept.
void TakeOverState(Machine& machine, const DeviceServer& server, DWORD process);

}  // namespace workbench
