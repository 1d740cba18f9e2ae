// The instance handle of this DLL, from which resources are loaded. Windows only.
#pragma once

#include <windows.h>

// Called once, by DllMain.
void SetModuleInstance(HINSTANCE instance) noexcept;

[[nodiscard]] HINSTANCE ModuleInstance() noexcept;
