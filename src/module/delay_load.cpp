// What happens when a delay-loaded DLL is first needed, and when it is not there.
//
// An installer loads and frees this module for every installation function, so it imports at load time only
// what such a call needs; the rest (delay_imports.cmake) is loaded by the first call that wants it.
#include <windows.h>

#include <delayimp.h>

#include <cstring>

#include "base/module_instance.h"

namespace {

using MissingFunction = LONG_PTR(WINAPI*)();

// The failure values of functions that are not there. All arguments are in registers or the caller's stack
// on this platform, so one function of each kind stands in for any signature.
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

struct MissingOf {
  const char* dll;
  MissingFunction function;
};
// DLLs whose functions return an error code; the functions of all others return 0 when they fail.
constexpr MissingOf kMissing[] = {
    {"msports.dll", &FailWithErrorCode}, {"oleaut32.dll", &FailWithResult}, {"ole32.dll", &FailWithResult}};

FARPROC MissingFunctionOf(const char* dll) noexcept {
  MissingFunction function = &FailWithZero;
  for (const MissingOf& row : kMissing) {
    if (lstrcmpiA(row.dll, dll) == 0) function = row.function;
  }
  FARPROC result = nullptr;
  static_assert(sizeof(result) == sizeof(function));
  std::memcpy(&result, &function, sizeof(result));
  return result;
}

// The system directory and nothing else: the host's directory or the current one may hold a file of the same
// name that somebody put there. comctl32 is found through the activation context first, as it must be.
HMODULE LoadFromSystem(const char* dll) noexcept {
  wchar_t name[64];
  if (MultiByteToWideChar(CP_ACP, 0, dll, -1, name, ARRAYSIZE(name)) == 0) return nullptr;
  if (const HMODULE module = LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) return module;
  // This module stands in for one that cannot be loaded: its functions are not found in it, and the
  // failure hook is asked for each of them.
  return ModuleInstance();
}

FARPROC WINAPI OnDelayLoad(unsigned notification, PDelayLoadInfo info) noexcept {
  if (notification != dliNotePreLoadLibrary) return nullptr;
  return reinterpret_cast<FARPROC>(LoadFromSystem(info->szDll));
}

// Without an answer from here the process would end in an exception.
FARPROC WINAPI OnDelayLoadFailure(unsigned notification, PDelayLoadInfo info) noexcept {
  if (notification == dliFailGetProc) return MissingFunctionOf(info->szDll);
  if (notification == dliFailLoadLib) return reinterpret_cast<FARPROC>(ModuleInstance());
  return nullptr;
}

}  // namespace

extern "C" {
PfnDliHook __pfnDliNotifyHook2 = &OnDelayLoad;
PfnDliHook __pfnDliFailureHook2 = &OnDelayLoadFailure;
}
