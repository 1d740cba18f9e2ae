// A registry of the machine's own.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// Redirects HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER and HKEY_CLASSES_ROOT of this process to a scratch key
// (RegOverridePredefKey) that is emptied at the end. One at a time per process. While it lives, every
// registry call of the process sees it: tests read and write with the ordinary functions or with these.
//
// Paths are below HKEY_LOCAL_MACHINE. Reading something absent gives nothing; the set operations throw
// std::runtime_error when the registry refuses, for then the machine cannot be built.
class RegistrySandbox {
 public:
  RegistrySandbox();
  ~RegistrySandbox();
  RegistrySandbox(const RegistrySandbox&) = delete;
  RegistrySandbox& operator=(const RegistrySandbox&) = delete;

  void SetText(const std::wstring& path, const std::wstring& name, const std::wstring& text);
  void SetDword(const std::wstring& path, const std::wstring& name, std::uint32_t value);
  void SetTexts(const std::wstring& path, const std::wstring& name, const std::vector<std::wstring>& texts);
  // Any type and any bytes, for values that are not terminated or of the wrong type.
  void SetRaw(const std::wstring& path, const std::wstring& name, DWORD type, const void* data, DWORD size);
  void MakeKey(const std::wstring& path);
  // Removing what is not there is fine.
  void DeleteValue(const std::wstring& path, const std::wstring& name);
  void DeleteKey(const std::wstring& path);  // with everything below

  [[nodiscard]] bool HasKey(const std::wstring& path) const;
  [[nodiscard]] std::optional<std::wstring> Text(const std::wstring& path, const std::wstring& name) const;
  [[nodiscard]] std::optional<std::uint32_t> Dword(const std::wstring& path, const std::wstring& name) const;
  struct RawValue {
    DWORD type = 0;
    std::vector<std::uint8_t> data;
  };
  [[nodiscard]] std::optional<RawValue> Raw(const std::wstring& path, const std::wstring& name) const;
  [[nodiscard]] std::vector<std::wstring> ValueNames(const std::wstring& path) const;
  [[nodiscard]] std::vector<std::wstring> KeyNames(const std::wstring& path) const;
};

// "System\CurrentControlSet\Enum\<id>" and its "Device Parameters".
[[nodiscard]] std::wstring EnumKeyOf(const std::wstring& instanceId);
[[nodiscard]] std::wstring ParametersKeyOf(const std::wstring& instanceId);
inline constexpr wchar_t kSerialCommKey[] = L"Hardware\\DeviceMap\\SERIALCOMM";
inline constexpr wchar_t kPortsKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Ports";

}  // namespace workbench
