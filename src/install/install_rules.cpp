#include "install/install_rules.h"

#include <string>

#include "base/decimal.h"

CWideString BackupKeyName(const CWideString& portInstanceId) {
  std::wstring name(portInstanceId.View());
  // Of the middle segment only the last character stays; the last segment tells the ports of one server
  // apart. Kept on purpose: backup key name
  const std::size_t first = name.find(L'\\');
  const std::size_t second = first == std::wstring::npos ? first : name.find(L'\\', first + 1);
  if (second != std::wstring::npos && second - first > 2) name.erase(first + 1, second - first - 2);
  CWideString key(name);
  key.Replace(L"\\", L"_");
  return key;
}

bool IsCapabilityValue(const CWideString& valueName) noexcept {
  return valueName.Find(L"Supported") != CWideString::kNotFound;
}

bool ForbidsDriverUpdate(const CWideString& noUpgrade) noexcept {
  return ParseDecimal(noUpgrade.View()) == 1;
}

bool SortsPortNames(std::uint32_t majorVersion, std::uint32_t minorVersion) noexcept {
  // Kept on purpose: version 7
  return (majorVersion == 6 && minorVersion >= 1) || majorVersion >= 8;
}
