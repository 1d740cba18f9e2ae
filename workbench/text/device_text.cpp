#include "workbench/text/device_text.h"

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

std::string Narrow(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  std::string bytes(text.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), 3 * length, nullptr, nullptr)));
  return bytes;
}

std::wstring Widen(std::string_view text) {
  const int length = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  wide.resize(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), length)));
  return wide;
}

std::wstring FolderOf(HMODULE module) {
  wchar_t path[MAX_PATH];
  const std::wstring file(path, GetModuleFileNameW(module, path, MAX_PATH));
  return file.substr(0, file.rfind(L'\\') + 1);
}

}  // namespace workbench
