// The DLL under test, loaded and redirected.
#pragma once

#include <windows.h>

#include <prsht.h>
#include <setupapi.h>

#include <memory>
#include <string>

namespace workbench {

class Machine;
class Redirection;

// KdUUI10.DLL, with its platform calls pointed at a machine, and its exports as typed functions. The
// machine must outlive it. Construction throws std::runtime_error when the DLL cannot be loaded; an export
// that it does not have stays null.
class Dll {
 public:
  using CoInstaller = DWORD(WINAPI*)(DI_FUNCTION, HDEVINFO, SP_DEVINFO_DATA*, COINSTALLER_CONTEXT_DATA*);
  using PortPropPage = BOOL(WINAPI*)(SP_PROPSHEETPAGE_REQUEST*, LPFNADDPROPSHEETPAGE, LPARAM);
  using TwoTexts = BOOL(WINAPI*)(const wchar_t*, const wchar_t*);
  using NetworkInfoUpdate = BOOL(WINAPI*)(const wchar_t* deviceInstanceId, void* reserved, DWORD address,
                                          DWORD dataPort, DWORD reserved2, DWORD configPort, DWORD webPort,
                                          DWORD mac1, DWORD mac2, DWORD duplexMode, DWORD portType);
  using SettingsUpdate = BOOL(WINAPI*)(const wchar_t* deviceInstanceId, void* reserved, DWORD baudRate,
                                       DWORD dataBits, DWORD parity, DWORD stopBits, DWORD flowControl);
  using NoArguments = HRESULT(WINAPI*)();
  using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);

  // The file beside the running program, or another one.
  explicit Dll(Machine& machine, const std::wstring& path = DefaultPath());
  ~Dll();
  Dll(const Dll&) = delete;
  Dll& operator=(const Dll&) = delete;

  [[nodiscard]] static std::wstring DefaultPath();
  [[nodiscard]] HMODULE Module() const { return module_; }

  CoInstaller CoInstallCard = nullptr;
  CoInstaller CoInstallPort = nullptr;
  PortPropPage PropPage = nullptr;
  TwoTexts ChangeComNumber = nullptr;
  TwoTexts UpdateDriver = nullptr;
  NetworkInfoUpdate NPortNetworkInfoUpdate = nullptr;
  SettingsUpdate NPortSettingsUpdate = nullptr;
  NoArguments CanUnloadNow = nullptr;
  NoArguments RegisterServer = nullptr;
  NoArguments UnregisterServer = nullptr;
  GetClassObject ClassObject = nullptr;

 private:
  void FindExports();

  HMODULE module_ = nullptr;
  std::unique_ptr<Redirection> redirection_;
};

}  // namespace workbench
