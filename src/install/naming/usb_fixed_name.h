// USB models whose port always has the same COM number. Windows only.
#pragma once

#include "install/naming/com_port_util.h"

// Gives a port its model's fixed COM number (FixedComNumber); another device that holds it is renamed first.
// The USB device above the port is restarted unless the port has the number already. True when the port
// belongs to such a model, whether the rename worked or not; false for all others and when the parent or the
// port's name cannot be read.
bool ApplyUsbFixedComName(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);

// Renames the first device that has this COM name to the lowest free number from `firstCandidate` up
// (NumberForMovedHolder). The COM name database is read through `port`. 1 when a device had the name, 0 when
// none had or devices cannot be listed. Kept on purpose: all classes
int MoveComNameHolder(CCOMPortUtil& port, const CWideString& name, std::uint32_t firstCandidate);
