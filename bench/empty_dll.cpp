// A DLL of the same toolchain with nothing in it: what loading costs that nobody can save.
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(instance);
  return TRUE;
}
