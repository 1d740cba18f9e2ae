// What becomes of a host that nobody looks after.
#pragma once

#include "workbench/machine/builders.h"

namespace workbench {

// To a host with one device server of four ports: a modem of another maker on COM3; a port on COM9 that was
// unplugged; COM12, which is claimed by nobody; and ports whose places disagree, each about another one:
//   2  the serial map    3  the friendly name    4  no DOS device, and the number not claimed
void NeglectHost(Machine& machine, const DeviceServer& server);

}  // namespace workbench
