// The instance handle of this DLL, from which resources are loaded. Windows only.
#pragma once

#include <windows.h>

// Called once, by DllMain, before any other function of the module runs.
void SetModuleInstance(HINSTANCE instance) noexcept;

// Null until it has been set. Not to be freed. Any thread.
[[nodiscard]] HINSTANCE ModuleInstance() noexcept;
