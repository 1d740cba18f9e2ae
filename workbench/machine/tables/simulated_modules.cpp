// Run-time look-ups: what the DLL loads and finds by itself is redirected like its imports.
#include <algorithm>
#include <cstring>
#include <functional>

#include "workbench/machine/tables/tables.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

constexpr std::wstring_view kHelpControl = L"hhctrl.ocx";
constexpr WORD kHtmlHelpOrdinal = 15;

// HTML Help is never really loaded: this stands for its module.
HMODULE HelpModule() {
  static const int module = 0;
  return reinterpret_cast<HMODULE>(const_cast<int*>(&module));
}

bool NamesHelpControl(std::wstring_view path) {
  return EqualNoCase(path.substr(path.find_last_of(L"\\/") + 1), kHelpControl);
}

// The thread's activation context says which file is meant.
bool IsRedirected(const std::wstring& name) {
  ACTCTX_SECTION_KEYED_DATA found{};
  found.cbSize = sizeof found;
  const CLastErrorKeeper keeper;
  return FindActCtxSectionStringW(0, nullptr, ACTIVATION_CONTEXT_SECTION_DLL_REDIRECTION, name.c_str(),
                                  &found) != FALSE;
}

// The product is installed in the system directory.
const wchar_t* PathToLoad(const wchar_t* path) {
  static constexpr wchar_t kProduct[] = L"KdUUI10.DLL";
  wchar_t installed[MAX_PATH];
  const UINT length = GetSystemDirectoryW(installed, MAX_PATH);
  const std::wstring product = std::wstring(installed, length) + L'\\' + kProduct;
  return path != nullptr && EqualNoCase(path, product) ? kProduct : path;
}

// Whoever can write to a directory that is searched before the system's own would get into the host.
void RequireSystemFile(const std::wstring& name) {
  if (name.find_first_of(L"\\/:") != std::wstring::npos || IsRedirected(name)) return;
  if (GetModuleHandleW(name.c_str()) != nullptr) return;  // nothing is searched for
  Gate::Current()->Violate("loads " + Narrow(name) + " from where it is found first");
}

// What the ways to load a DLL have in common; `load` is Windows' own.
HMODULE LoadChecked(const std::wstring& path, DWORD flags, const std::function<HMODULE()>& load) {
  RequireSystemFile(path);
  // Windows 6.0 and 6.1 know LOAD_LIBRARY_SEARCH_SYSTEM32 and its like by an update only.
  constexpr DWORD kLaterFlags = 0x1F00;
  if ((flags & kLaterFlags) != 0) return FailWith<HMODULE>(ERROR_INVALID_PARAMETER);
  if (!NamesHelpControl(path)) return load();
  return Machine::Current()->Screen().htmlHelpInstalled ? HelpModule()
                                                        : FailWith<HMODULE>(ERROR_MOD_NOT_FOUND);
}
HMODULE WINAPI LoadA(const char* path) {
  return LoadChecked(LoggedText(path), 0, [&] { return ::LoadLibraryA(path); });
}
HMODULE WINAPI LoadW(const wchar_t* path) {
  return LoadChecked(LoggedText(path), 0, [&] { return ::LoadLibraryW(PathToLoad(path)); });
}
HMODULE WINAPI LoadExA(const char* path, HANDLE file, DWORD flags) {
  return LoadChecked(LoggedText(path), flags, [&] { return ::LoadLibraryExA(path, file, flags); });
}
HMODULE WINAPI LoadExW(const wchar_t* path, HANDLE file, DWORD flags) {
  return LoadChecked(LoggedText(path), flags, [&] { return ::LoadLibraryExW(path, file, flags); });
}

BOOL WINAPI Free(HMODULE module) {
  return module == HelpModule() ? TRUE : ::FreeLibrary(module);
}

// A function of a DLL that is simulated as a whole must have a row, or the real host would be touched.
bool IsOfSimulatedDll(HMODULE module) {
  return std::ranges::any_of(kSimulatedDlls, [&](auto* name) { return module == GetModuleHandleW(name); });
}

FARPROC WINAPI Find(HMODULE module, const char* name) {
  const std::uint64_t bits = Bits(name);
  if (module == HelpModule()) {
    const bool known = bits == kHtmlHelpOrdinal || (bits > 0xFFFF && std::strcmp(name, "HtmlHelpW") == 0);
    if (known) return reinterpret_cast<FARPROC>(FindRow("HtmlHelpW")->hook);
    return FailWith<FARPROC>(ERROR_PROC_NOT_FOUND);
  }
  const FARPROC real = ::GetProcAddress(module, name);
  if (bits <= 0xFFFF) return real;
  // A simulated function is there even where the host's DLL lacks it, but only in its own DLL.
  const FunctionRow* row = FindRow(name);
  const bool there =
      real != nullptr || (row != nullptr && row->simulated && module == GetModuleHandleA(row->dll));
  if (row != nullptr && there) return reinterpret_cast<FARPROC>(row->hook);
  if (real == nullptr || !IsOfSimulatedDll(module)) return real;
  const CLastErrorKeeper keeper;
  Gate::Current()->Violate(std::string(name) + " is not simulated");
  return real;
}

const FunctionRow kRows[] = {
    {"kernel32.dll", KD_SIMULATED(LoadLibraryA, LoadA), FailsWithZero(ERROR_MOD_NOT_FOUND),
     Returns(HandleKind::Module)},
    {"kernel32.dll", KD_SIMULATED(LoadLibraryW, LoadW), FailsWithZero(ERROR_MOD_NOT_FOUND),
     Returns(HandleKind::Module)},
    {"kernel32.dll", KD_SIMULATED(LoadLibraryExA, LoadExA), FailsWithZero(ERROR_MOD_NOT_FOUND),
     Returns(HandleKind::Module)},
    {"kernel32.dll", KD_SIMULATED(LoadLibraryExW, LoadExW), FailsWithZero(ERROR_MOD_NOT_FOUND),
     Returns(HandleKind::Module)},
    {"kernel32.dll", KD_SIMULATED(FreeLibrary, Free), FailsWithZero(ERROR_INVALID_HANDLE),
     Closes(HandleKind::Module)},
    {"kernel32.dll", KD_REAL(GetModuleHandleW), FailsWithZero(ERROR_MOD_NOT_FOUND)},
    {"kernel32.dll", KD_SIMULATED(GetProcAddress, Find), FailsWithZero(ERROR_PROC_NOT_FOUND)},
};

}  // namespace

const std::span<const FunctionRow> kModuleRows = kRows;

}  // namespace workbench
