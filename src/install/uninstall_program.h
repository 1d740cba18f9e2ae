// The product's uninstall program. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

// Starts the program of the system directory that the device server's value "UnInstall" names; with `wait`,
// waits up to a minute for its end. Without that value nothing happens. A program that does not start is not
// reported. Kept on purpose: open handles
void RunUninstallProgram(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& server, bool wait);
