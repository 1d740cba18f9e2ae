// Pushes settings of a management program into a port's drivers. Windows only.
#pragma once

#include "config/settings_rules.h"

// Both find the port by its device instance id among the devices that are present, write the settings, and
// restart the device if the port cannot be opened then. Neither shows anything.
//
// They return 1 when the drivers took the settings, whatever came of the restart, and otherwise 0: a null or
// unknown id, a port without a COM name or without a configuration interface, a driver that refuses. They
// throw std::bad_alloc when memory runs out before that.
//
// Both read the sets, change them and write them back, which is not one step: of two calls for one port at
// the same time one may be lost. Any thread.

// Writes the network bus set, then the port set; when the second write fails, the first one stays.
[[nodiscard]] int UpdateNetworkInfo(const wchar_t* deviceInstanceId, const NetworkInfo& info);

// Writes the port set.
[[nodiscard]] int UpdateLineSettings(const wchar_t* deviceInstanceId, const LineSettings& settings);
