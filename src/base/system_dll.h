// Loading DLLs of Windows. Windows only.
#pragma once

#include <windows.h>

// Loads `name`, a file's name without a directory, from the system directory and nowhere else: the host's
// directory and the current one may hold a file of the same name that somebody put there. What the DLL itself
// needs is looked for beside it first. Only a name that the thread's activation context redirects (comctl32
// version 6) is loaded from where the context says. Null, and the last error, when it cannot be loaded.
[[nodiscard]] HMODULE LoadSystemDll(const char* name) noexcept;
