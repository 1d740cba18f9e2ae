// USB models whose port always sits on the same COM number. Windows only.
#pragma once

#include "install/naming/com_port_util.h"

// Gives a port its model's fixed COM number; another device that holds it moves away first. The USB device
// above the port is restarted when the name changed. True when the port belongs to such a model, false for
// all others and when the parent or the port's name cannot be read.
bool ApplyUsbFixedComName(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);

// Moves the first device that has this COM name to the lowest free number from `firstCandidate` up. `port`
// lends its way to the COM name database. 1 when a device had the name, 0 when none had or devices cannot
// be listed.
int MoveComNameHolder(CCOMPortUtil& port, const CWideString& name, std::uint32_t firstCandidate);
