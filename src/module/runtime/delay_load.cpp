// What happens when a delay-loaded function is first called, and when it is not there. An installer loads and
// frees this module for every installation function, so it imports at load time only what such a call needs;
// the rest (delay_imports.S) is loaded by the first call that needs it.
#include <windows.h>

#include "base/system_dll.h"

namespace {

// The tables of delay_load.inc.
struct DelayedDll {
  const char* name;
  void* volatile module;  // null until it was loaded; kept from then on
};
struct DelayedFunction {
  DelayedDll* dll;
  const char* name;
  FARPROC* address;  // where the callers look
  FARPROC missing;
};

HMODULE ModuleOf(DelayedDll& dll) noexcept {
  if (dll.module != nullptr) return static_cast<HMODULE>(dll.module);
  const HMODULE loaded = LoadSystemDll(dll.name);
  if (loaded == nullptr) return nullptr;
  // Of several threads at their first call one keeps its reference.
  void* const first = InterlockedCompareExchangePointer(&dll.module, loaded, nullptr);
  if (first == nullptr) return loaded;
  FreeLibrary(loaded);
  return static_cast<HMODULE>(first);
}

}  // namespace

extern "C" {

// What missing functions answer. All arguments are in registers or the caller's stack on this platform, so
// one function of each kind stands in for any signature.
LONG_PTR WINAPI FailWithZero() noexcept {
  SetLastError(ERROR_PROC_NOT_FOUND);
  return 0;
}
LONG_PTR WINAPI FailWithErrorCode() noexcept {
  return ERROR_PROC_NOT_FOUND;
}
LONG_PTR WINAPI FailWithResult() noexcept {
  return HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
}

// Where a call of the function is to go. A failure is not kept: the next call looks again.
FARPROC FindDelayed(const DelayedFunction* function) noexcept {
  const HMODULE module = ModuleOf(*function->dll);
  const FARPROC found = module != nullptr ? GetProcAddress(module, function->name) : nullptr;
  if (found == nullptr) return function->missing;
  *function->address = found;
  return found;
}
}
