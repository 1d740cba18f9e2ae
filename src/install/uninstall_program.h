// The product's uninstall program. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

// Starts the program of the system directory that the device server's value "UnInstall" names; `wait`
// waits up to a minute for its end. Nothing happens without that value, and a program that does not start
// is not missed.
void RunUninstallProgram(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& server, bool wait);
