// The module's entry point.
#include <windows.h>

#include "base/module_instance.h"

// Runs under the loader lock, where next to nothing is allowed.
// cppcheck-suppress constParameter ; the signature is Windows' own
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    SetModuleInstance(instance);
    DisableThreadLibraryCalls(instance);
  }
  return TRUE;
}
