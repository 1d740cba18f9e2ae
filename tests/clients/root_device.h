// Devices that the tests with outside clients make and install.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include <filesystem>
#include <string>

#include "base/device_handles.h"
#include "client.h"

inline constexpr GUID kPortsClass = {
    0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};

// One device that has been made and registered, but has no driver yet.
class RootDevice {
 public:
  RootDevice(const GUID& deviceClass, const wchar_t* name, const std::wstring& hardwareId);

  [[nodiscard]] bool IsMade() const { return made_; }
  [[nodiscard]] HDEVINFO Set() const { return set_.Get(); }
  [[nodiscard]] SP_DEVINFO_DATA& Element() { return element_; }
  [[nodiscard]] std::wstring InstanceId();
  BOOL Call(DI_FUNCTION function) { return SetupDiCallClassInstaller(function, set_.Get(), &element_); }
  // Of the driver key (DIREG_DRV) or of the hardware key (DIREG_DEV).
  [[nodiscard]] std::wstring Text(DWORD keyType, const wchar_t* name);
  void SetText(DWORD keyType, const wchar_t* name, const std::wstring& text);

 private:
  CDeviceInfoList set_;
  SP_DEVINFO_DATA element_{};
  bool made_ = false;
};

// Installs the INF file for every device with this hardware id.
[[nodiscard]] bool Install(const std::filesystem::path& inf, const wchar_t* hardwareId);
