#include "base/system_dll.h"

namespace {

bool IsRedirected(const wchar_t* name) noexcept {
  ACTCTX_SECTION_KEYED_DATA found{};
  found.cbSize = sizeof(found);
  return FindActCtxSectionStringW(0, nullptr, ACTIVATION_CONTEXT_SECTION_DLL_REDIRECTION, name, &found) !=
         FALSE;
}

}  // namespace

HMODULE LoadSystemDll(const char* name) noexcept {
  wchar_t path[2 * MAX_PATH];
  const UINT directory = GetSystemDirectoryW(path, MAX_PATH);
  if (directory == 0 || directory >= MAX_PATH) return nullptr;
  path[directory] = L'\\';
  wchar_t* const file = path + directory + 1;
  if (MultiByteToWideChar(CP_ACP, 0, name, -1, file, MAX_PATH - 1) == 0) return nullptr;
  // A complete path is never redirected. The flag for the system directory is an update of Windows 6.0
  // and 6.1.
  if (IsRedirected(file)) return LoadLibraryExW(file, nullptr, 0);
  return LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}
