// The four COM entry points. What they do is in com_module.h; here is only the boundary.
#include <kdui10.h>

#include <type_traits>

#include "base/export_guard.h"
#include "module/com_module.h"

extern "C" HRESULT WINAPI DllCanUnloadNow() {
  return ComModule().DllCanUnloadNow();
}

extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
  return ComModule().DllGetClassObject(classId, interfaceId, object);
}

extern "C" HRESULT WINAPI DllRegisterServer() {
  return GuardBoundary(E_OUTOFMEMORY, [] { return ComModule().DllRegisterServer(); });
}

extern "C" HRESULT WINAPI DllUnregisterServer() {
  return GuardBoundary(E_OUTOFMEMORY, [] { return ComModule().DllUnregisterServer(); });
}

// The contract has these four as types only.
static_assert(std::is_same_v<KdDllCanUnloadNowFn, decltype(&DllCanUnloadNow)>);
static_assert(std::is_same_v<KdDllGetClassObjectFn, decltype(&DllGetClassObject)>);
static_assert(std::is_same_v<KdDllRegisterServerFn, decltype(&DllRegisterServer)>);
static_assert(std::is_same_v<KdDllUnregisterServerFn, decltype(&DllUnregisterServer)>);
