// The DLL under test, loaded and redirected.
#pragma once

#include <memory>
#include <string>

#include "kdui10.h"
#include "workbench/machine/models/machine.h"

namespace workbench {

class Redirection;

// KdUUI10.DLL, with its platform calls pointed at a machine, and its exports as typed functions. The
// machine must outlive it. Construction throws std::runtime_error when the DLL cannot be loaded; an export
// that it does not have stays null.
class Dll {
 public:
  // The file beside the running program, or another one.
  explicit Dll(Machine& machine, const std::wstring& path = DefaultPath());
  ~Dll();
  Dll(const Dll&) = delete;
  Dll& operator=(const Dll&) = delete;

  [[nodiscard]] static std::wstring DefaultPath();
  [[nodiscard]] HMODULE Module() const { return module_; }

  KdUCoInstallCardFn CoInstallCard = nullptr;
  KdUCoInstallPortFn CoInstallPort = nullptr;
  KdUPortPropPageFn PropPage = nullptr;
  KdChangeComNumberFn ChangeComNumber = nullptr;
  KdUpdateDriverFn UpdateDriver = nullptr;
  KdNPortNetworkInfoUpdateFn NPortNetworkInfoUpdate = nullptr;
  KdNPortSettingsUpdateFn NPortSettingsUpdate = nullptr;
  KdDllCanUnloadNowFn CanUnloadNow = nullptr;
  KdDllRegisterServerFn RegisterServer = nullptr;
  KdDllUnregisterServerFn UnregisterServer = nullptr;
  KdDllGetClassObjectFn ClassObject = nullptr;

 private:
  void FindExports();

  HMODULE module_ = nullptr;
  std::unique_ptr<Redirection> redirection_;
};

}  // namespace workbench
