#include "workbench/machine/models/device_text.h"

#include <cwchar>

namespace workbench {

bool EqualNoCase(std::wstring_view left, std::wstring_view right) {
  return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                              static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

std::wstring GuidText(const GUID& guid) {
  wchar_t text[40];
  std::swprintf(text, 40, L"{%08lx-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x}", guid.Data1, guid.Data2,
                guid.Data3, guid.Data4[0], guid.Data4[1], guid.Data4[2], guid.Data4[3], guid.Data4[4],
                guid.Data4[5], guid.Data4[6], guid.Data4[7]);
  return text;
}

DWORD ComNumberOf(std::wstring_view name) {
  if (name.size() <= 3) return 0;
  return static_cast<DWORD>(std::wcstoul(std::wstring(name.substr(3)).c_str(), nullptr, 10));
}

std::string NarrowText(std::wstring_view text) {
  std::string narrow;
  for (const wchar_t unit : text) narrow += unit < 0x80 ? static_cast<char>(unit) : '?';
  return narrow;
}

}  // namespace workbench
