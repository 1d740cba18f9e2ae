#include "workbench/machine/dll.h"

#include <mutex>
#include <stdexcept>

#include "workbench/machine/gate/redirection.h"
#include "workbench/machine/tables/tables.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

template <class Function>
void Find(HMODULE module, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<AnyFunction>(GetProcAddress(module, name)));
}

// Once: every table is handed to the gate.
void PrepareProcess() {
  static std::once_flag prepared;
  std::call_once(prepared, [] {
    // A host of the DLL has SetupAPI; where it comes and goes with the DLL, it is mapped anew for each
    // machine.
    static_cast<void>(LoadLibraryW(L"setupapi.dll"));
    for (const auto& table :
         {kDeviceTreeRows, kDeviceSetRows, kDevicePropertyRows, kComNameRows, kFileRows, kHostRows,
          kScreenRows, kModuleRows, kKernelRows, kRegistryRows, kInternetRows, kWindowRows}) {
      AddRows(table);
    }
  });
}

AnyFunction ChooseHook(const char*, const char* name) {
  const FunctionRow* row = FindRow(name);
  return row == nullptr ? nullptr : row->hook;
}

void ReportUnsimulated(Machine& machine, const Redirection& redirection) {
  for (const std::string& import : redirection.Untouched()) {
    const std::wstring dll = Widen(import.substr(0, import.find('!')));
    for (const wchar_t* simulated : kSimulatedDlls) {
      if (EqualNoCase(dll, simulated)) machine.Calls().Violate("import " + import + " is not simulated");
    }
  }
}

}  // namespace

std::wstring Dll::DefaultPath() {
  return FolderOf(nullptr) + L"KdUUI10.DLL";
}

Dll::Dll(Machine& machine, const std::wstring& path) : module_(LoadLibraryW(path.c_str())) {
  PrepareProcess();
  if (module_ == nullptr) {
    throw std::runtime_error("cannot load " + Narrow(path) + ", error " + std::to_string(GetLastError()));
  }
  redirection_ = std::make_unique<Redirection>(module_, ChooseHook);
  ReportUnsimulated(machine, *redirection_);
  FindExports();
}

// The redirection stays while the DLL unloads, so that what it gives back then is counted.
Dll::~Dll() {
  FreeLibrary(module_);
  HMODULE still = nullptr;
  if (!GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<const wchar_t*>(module_), &still)) {
    redirection_->Abandon();
  }
}

void Dll::FindExports() {
  Find(module_, "KdUCoInstallCard", CoInstallCard);
  Find(module_, "KdUCoInstallPort", CoInstallPort);
  Find(module_, "KdUPortPropPage", PropPage);
  Find(module_, "KdChangeComNumber", ChangeComNumber);
  Find(module_, "KdUpdateDriver", UpdateDriver);
  Find(module_, "KdNPortNetworkInfoUpdate", NPortNetworkInfoUpdate);
  Find(module_, "KdNPortSettingsUpdate", NPortSettingsUpdate);
  Find(module_, "DllCanUnloadNow", CanUnloadNow);
  Find(module_, "DllRegisterServer", RegisterServer);
  Find(module_, "DllUnregisterServer", UnregisterServer);
  Find(module_, "DllGetClassObject", ClassObject);
}

}  // namespace workbench
