#include "config/user_mode_config.h"

#include <cstddef>

#include "config/driver_channel.h"

namespace {

constexpr wchar_t kReferencePrefix[] = L"kdgendrv_";

CWideString WithoutBackslashes(const CWideString& text) {
  std::wstring result;
  for (const wchar_t *at = text.Text(), *next = nullptr; *at != 0; at = next) {
    next = CharNextW(at);
    if (*at != L'\\') result.append(at, next);
  }
  return CWideString(result);
}

}  // namespace

// What follows the last backslash; the whole path when it has none.
CWideString ReferenceOfPath(const CWideString& path) {
  const std::size_t backslash = path.View().rfind(L'\\');
  CWideString reference = backslash == std::wstring_view::npos ? path : path.Mid(backslash + 1);
  reference.MakeLower();
  return reference;
}

CWideString ConfigurationReference(const CKDDeviceRegInfo& device) {
  CWideString driverKey;
  if (!device.GetDriverKeyName(driverKey)) return {};
  CWideString reference = CWideString(kReferencePrefix) + WithoutBackslashes(driverKey).View();
  reference.MakeLower();
  return reference;
}

bool CKdUserModeConfig::FindDeviceInterface() {
  path_ = CWideString();
  const CWideString expected = ConfigurationReference(device_);
  if (expected.IsEmpty() || !OpenInterfaces()) return false;
  CWideString path;
  for (DWORD index = 0; ReadPath(index, path); ++index) {
    if (ReferenceOfPath(path) != expected) continue;
    path_ = path;
    return true;
  }
  return false;
}

bool CKdUserModeConfig::GetParameterSet(CSsInformationSet& set, std::uint32_t selector) {
  return ReadCurrentSet(path_, set, selector);
}

bool CKdUserModeConfig::GetDefaultParameterSet(CSsInformationSet& set, std::uint32_t selector) {
  return ReadDefaultSet(path_, set, selector);
}

bool CKdUserModeConfig::SetParameterSet(CSsInformationSet& set, std::uint32_t selector) {
  return WriteSet(path_, set, selector);
}
