#include "install/devices/device_reg_info.h"

#include <array>
#include <cwchar>
#include <string_view>

#include "install/devices/grow_and_retry.h"

static_assert(sizeof(SP_DEVINFO_DATA) == 32);

namespace {

constexpr DWORD kRegistryStringBytes = 300;

DWORD BytesOf(std::size_t characters) {
  return static_cast<DWORD>(characters * sizeof(wchar_t));
}

}  // namespace

CDeviceKey OpenDeviceKey(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element, REGSAM access) {
  SP_DEVINFO_DATA copy = element;
  return CDeviceKey(SetupDiOpenDevRegKey(deviceInfoSet, &copy, DICS_FLAG_GLOBAL, 0, DIREG_DEV, access));
}

bool ReadDevRegString(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element, const wchar_t* name,
                      CWideString& value) {
  const CDeviceKey key = OpenDeviceKey(deviceInfoSet, element, GENERIC_READ);
  if (!key) return false;
  // Zeroed, because SetRegString stores values without their terminator.
  std::array<wchar_t, kRegistryStringBytes / sizeof(wchar_t)> buffer{};
  DWORD size = kRegistryStringBytes;
  if (RegQueryValueExW(key.Get(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer.data()), &size) !=
      ERROR_SUCCESS) {
    return false;
  }
  const std::size_t length = std::wstring_view(buffer.data(), buffer.size()).find(L'\0');
  if (length == std::wstring_view::npos) return false;
  value = std::wstring_view(buffer.data(), length);
  return true;
}

bool ReadDevRegDword(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element, const wchar_t* name,
                     std::uint32_t& value) {
  const CDeviceKey key = OpenDeviceKey(deviceInfoSet, element, GENERIC_READ);
  if (!key) return false;
  std::uint32_t read = 0;
  DWORD size = sizeof(read);
  if (RegQueryValueExW(key.Get(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(&read), &size) !=
      ERROR_SUCCESS) {
    return false;
  }
  value = read;
  return true;
}

bool WriteDevRegDword(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element, const wchar_t* name,
                      std::uint32_t value) {
  const CDeviceKey key = OpenDeviceKey(deviceInfoSet, element, GENERIC_WRITE);
  if (!key) return false;
  return RegSetValueExW(key.Get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                        sizeof(value)) == ERROR_SUCCESS;
}

bool CKDDeviceRegInfo::GetDeviceRegistryString(DWORD property, CWideString& value) const {
  CLocalMemory buffer;
  DWORD size = 0;
  const bool read = GrowAndRetry(buffer, size, [&](BYTE* bytes, DWORD room, DWORD* required) {
    return SetupDiGetDeviceRegistryPropertyW(set_, &element_, property, nullptr, bytes, room, required) !=
           FALSE;
  });
  if (!read) return false;
  const auto* text = static_cast<const wchar_t*>(buffer.Get());
  const std::size_t room = size / sizeof(wchar_t);
  value = text == nullptr ? CWideString() : CWideString(std::wstring_view(text, wcsnlen(text, room)));
  return true;
}

bool CKDDeviceRegInfo::GetDriverKeyName(CWideString& value) const {
  return GetDeviceRegistryString(SPDRP_DRIVER, value);
}

bool CKDDeviceRegInfo::GetFriendlyName(CWideString& value) const {
  return GetDeviceRegistryString(SPDRP_FRIENDLYNAME, value);
}

bool CKDDeviceRegInfo::SetFriendlyName(const CWideString& value) const {
  const DWORD size = BytesOf(value.Length() + 1);
  const CLocalMemory buffer(LocalAlloc(LMEM_ZEROINIT, size));
  if (!buffer) return false;
  CopyMemory(buffer.Get(), value.Text(), BytesOf(value.Length()));
  return SetupDiSetDeviceRegistryPropertyW(set_, &element_, SPDRP_FRIENDLYNAME,
                                           static_cast<const BYTE*>(buffer.Get()), size) != FALSE;
}

bool CKDDeviceRegInfo::GetRegString(const wchar_t* name, CWideString& value) const {
  return ReadDevRegString(set_, element_, name, value);
}

bool CKDDeviceRegInfo::SetRegString(const wchar_t* name, const CWideString& value) const {
  const CDeviceKey key = OpenDeviceKey(set_, element_, GENERIC_WRITE);
  if (!key) return false;
  // Kept on purpose: no terminator. Our own reads are into zeroed buffers.
  return RegSetValueExW(key.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.Text()),
                        BytesOf(value.Length())) == ERROR_SUCCESS;
}
