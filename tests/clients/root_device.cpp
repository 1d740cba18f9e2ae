#include "root_device.h"

#include <newdev.h>

RootDevice::RootDevice(const GUID& deviceClass, const wchar_t* name, const std::wstring& hardwareId)
    : set_(SetupDiCreateDeviceInfoList(&deviceClass, nullptr)) {
  element_.cbSize = sizeof element_;
  std::wstring ids = hardwareId + L'\0';
  made_ = SetupDiCreateDeviceInfoW(set_.Get(), name, &deviceClass, nullptr, nullptr, DICD_GENERATE_ID,
                                   &element_) &&
          SetupDiSetDeviceRegistryPropertyW(set_.Get(), &element_, SPDRP_HARDWAREID,
                                            reinterpret_cast<BYTE*>(ids.data()),
                                            static_cast<DWORD>((ids.size() + 1) * sizeof(wchar_t))) &&
          SetupDiCallClassInstaller(DIF_REGISTERDEVICE, set_.Get(), &element_);
}

std::wstring RootDevice::InstanceId() {
  wchar_t id[MAX_PATH] = {};
  SetupDiGetDeviceInstanceIdW(set_.Get(), &element_, id, MAX_PATH, nullptr);
  return id;
}

std::wstring RootDevice::Text(DWORD keyType, const wchar_t* name) {
  const CDeviceKey key(SetupDiOpenDevRegKey(set_.Get(), &element_, DICS_FLAG_GLOBAL, 0, keyType, KEY_READ));
  return RegistryText(key.Get(), L"", name);
}

void RootDevice::SetText(DWORD keyType, const wchar_t* name, const std::wstring& text) {
  const CDeviceKey key(
      SetupDiCreateDevRegKeyW(set_.Get(), &element_, DICS_FLAG_GLOBAL, 0, keyType, nullptr, nullptr));
  RegSetValueExW(key.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                 static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

bool Install(const std::filesystem::path& inf, const wchar_t* hardwareId) {
  BOOL restart = FALSE;
  return UpdateDriverForPlugAndPlayDevicesW(nullptr, hardwareId, inf.c_str(), INSTALLFLAG_FORCE, &restart) !=
         FALSE;
}
