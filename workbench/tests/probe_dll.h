// The probe DLL, redirected to a machine.
#pragma once

#include <windows.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "workbench/machine/builders.h"
#include "workbench/machine/dll.h"
#include "workbench/text/device_text.h"

namespace workbench {

class ProbeDll {
 public:
  explicit ProbeDll(Machine& machine) : dll_(machine, FolderOf(nullptr) + L"redirect_probe.dll") {}

  // Calls an export; `Signature` is its function type.
  template <class Signature, class... A>
  auto Call(const char* name, A... arguments) const {
    auto* function =
        reinterpret_cast<Signature*>(reinterpret_cast<AnyFunction>(GetProcAddress(dll_.Module(), name)));
    if (function == nullptr) throw std::logic_error(std::string("no export ") + name);
    return function(arguments...);
  }

  [[nodiscard]] HANDLE OpenFile(const std::wstring& path) const {
    return Call<HANDLE(const wchar_t*)>("OpenPath", path.c_str());
  }
  BOOL CloseFile(HANDLE file) const { return Call<BOOL(HANDLE)>("CloseFile", file); }
  [[nodiscard]] LSTATUS OpenKey(const wchar_t* path, HKEY* key) const {
    return Call<LSTATUS(const wchar_t*, HKEY*)>("OpenKey", path, key);
  }
  LSTATUS CloseKey(HKEY key) const { return Call<LSTATUS(HKEY)>("CloseKey", key); }
  [[nodiscard]] FARPROC Find(const char* dll, const char* name) const {
    return Call<FARPROC(const char*, const char*)>("FindByName", dll, name);
  }

 private:
  Dll dll_;
};

}  // namespace workbench
