// The module's entry point.
#include <windows.h>

#include "base/module_instance.h"
#include "module/exception_state.h"

// Runs under the loader lock, where next to nothing is allowed.
// cppcheck-suppress constParameter ; the signature is Windows' own
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID processEnds) {
  if (reason == DLL_PROCESS_ATTACH) {
    SetModuleInstance(instance);
    DisableThreadLibraryCalls(instance);
  } else if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
    ReleaseExceptionState();
  }
  return TRUE;
}
