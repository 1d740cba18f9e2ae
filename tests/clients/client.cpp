#include "client.h"

#include <fstream>

#include "base/unique_handle.h"

namespace {

std::wstring Environment(const wchar_t* name) {
  wchar_t value[MAX_PATH];
  const DWORD length = GetEnvironmentVariableW(name, value, MAX_PATH);
  return std::wstring(value, length < MAX_PATH ? length : 0);
}

}  // namespace

bool InThrowAwayPrefix() {
  const bool wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
  return wine && !Environment(L"KDUUI_SETUP_TRACE").empty();
}

std::filesystem::path ProgramFolder() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

std::filesystem::path SystemFolder() {
  wchar_t path[MAX_PATH];
  GetSystemDirectoryW(path, MAX_PATH);
  return path;
}

std::wstring RegistryText(HKEY key, const std::wstring& path, const wchar_t* name) {
  wchar_t text[1024];
  DWORD size = sizeof text;
  const LSTATUS status =
      RegGetValueW(key, path.c_str(), name, RRF_RT_REG_SZ | RRF_RT_REG_MULTI_SZ, nullptr, text, &size);
  return status == ERROR_SUCCESS ? text : L"(none)";
}

std::vector<std::wstring> RegistryKeys(HKEY key, const std::wstring& path) {
  CRegistryKey opened;
  std::vector<std::wstring> names;
  if (RegOpenKeyExW(key, path.c_str(), 0, KEY_READ, opened.Put()) != ERROR_SUCCESS) return names;
  wchar_t name[256];
  for (DWORD i = 0, size = 256;
       RegEnumKeyExW(opened.Get(), i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, size = 256) {
    names.emplace_back(name, size);
  }
  return names;
}

std::vector<std::string> SetupTrace(const std::string& what) {
  std::vector<std::string> lines;
  // The file is named the way the host names it; drive Z: is the host's root.
  std::ifstream file(std::filesystem::path(L"Z:" + Environment(L"KDUUI_SETUP_TRACE")));
  for (std::string line; std::getline(file, line);) {
    if (line.find(what) != std::string::npos) lines.push_back(line);
  }
  return lines;
}
