#include "install/naming/dos_device.h"

#include <windows.h>

#include <array>

bool ReadDosDevice(const CWideString& name, CWideString& kernelPath) {
  std::array<wchar_t, 256> buffer{};
  if (QueryDosDeviceW(name.Text(), buffer.data(), static_cast<DWORD>(buffer.size())) == 0) return false;
  // A list, the definition in force first.
  buffer.back() = L'\0';
  kernelPath = CWideString(buffer.data());
  return true;
}

bool HasDosDevice(const CWideString& name) {
  CWideString kernelPath;
  return ReadDosDevice(name, kernelPath);
}

bool AddDosDevice(const CWideString& name, const CWideString& kernelPath) {
  return DefineDosDeviceW(DDD_RAW_TARGET_PATH, name.Text(), kernelPath.Text()) != FALSE;
}

bool RemoveDosDevice(const CWideString& name, const CWideString& kernelPath) {
  return DefineDosDeviceW(DDD_RAW_TARGET_PATH | DDD_REMOVE_DEFINITION | DDD_EXACT_MATCH_ON_REMOVE,
                          name.Text(), kernelPath.Text()) != FALSE;
}
