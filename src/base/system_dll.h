// Loading DLLs of Windows. Windows only.
#pragma once

#include <windows.h>

// Loads `name`, a file's name without a directory, from the system directory and nowhere else: a file of the
// same name in the host's directory or the current one is not trusted. What the DLL itself needs is looked
// for beside it first. Only a name that the thread's activation context redirects (comctl32 version 6) is
// loaded from where the context says.
//
// Returns null, with the thread's last error set, when it cannot be loaded. Otherwise the caller has one
// reference, to be given back with FreeLibrary. Any thread, except within DllMain.
[[nodiscard]] HMODULE LoadSystemDll(const char* name) noexcept;
