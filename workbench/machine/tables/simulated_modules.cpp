// Run-time look-ups: what the DLL loads and finds by itself is redirected like its imports.
#include <cstring>

#include "workbench/machine/models/device_text.h"
#include "workbench/machine/tables/tables.h"

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
  const std::size_t slash = path.find_last_of(L"\\/");
  return EqualNoCase(slash == std::wstring_view::npos ? path : path.substr(slash + 1), kHelpControl);
}

std::wstring Wide(const char* text) {
  return text == nullptr ? L"" : std::wstring(text, text + std::strlen(text));
}

// Answers for the help control; false when another module is meant.
bool AnswerHelp(std::wstring_view path, HMODULE& module) {
  if (!NamesHelpControl(path)) return false;
  module = Machine::Current()->Screen().htmlHelpInstalled ? HelpModule() : nullptr;
  if (module == nullptr) SetLastError(ERROR_MOD_NOT_FOUND);
  return true;
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
  CurrentGate()->Violate("loads " + std::string(name.begin(), name.end()) + " from where it is found first");
}

// Windows 6.0 and 6.1 know LOAD_LIBRARY_SEARCH_SYSTEM32 and its like by an update only.
bool RefusesFlags(DWORD flags) {
  constexpr DWORD kLater = 0x1F00;
  if ((flags & kLater) == 0) return false;
  SetLastError(ERROR_INVALID_PARAMETER);
  return true;
}

HMODULE WINAPI LoadA(const char* path) {
  RequireSystemFile(Wide(path));
  HMODULE module = nullptr;
  return AnswerHelp(Wide(path), module) ? module : ::LoadLibraryA(path);
}
HMODULE WINAPI LoadW(const wchar_t* path) {
  RequireSystemFile(path != nullptr ? path : L"");
  HMODULE module = nullptr;
  return path != nullptr && AnswerHelp(path, module) ? module : ::LoadLibraryW(PathToLoad(path));
}
HMODULE WINAPI LoadExA(const char* path, HANDLE file, DWORD flags) {
  RequireSystemFile(Wide(path));
  if (RefusesFlags(flags)) return nullptr;
  HMODULE module = nullptr;
  return AnswerHelp(Wide(path), module) ? module : ::LoadLibraryExA(path, file, flags);
}
HMODULE WINAPI LoadExW(const wchar_t* path, HANDLE file, DWORD flags) {
  RequireSystemFile(path != nullptr ? path : L"");
  if (RefusesFlags(flags)) return nullptr;
  HMODULE module = nullptr;
  return path != nullptr && AnswerHelp(path, module) ? module : ::LoadLibraryExW(path, file, flags);
}

BOOL WINAPI Free(HMODULE module) {
  return module == HelpModule() ? TRUE : ::FreeLibrary(module);
}

// A function of a DLL that is simulated as a whole must have a row, or the real host would be touched.
bool IsOfSimulatedDll(HMODULE module) {
  for (const wchar_t* name : {L"setupapi.dll", L"cfgmgr32.dll", L"msports.dll", L"newdev.dll"}) {
    if (module == GetModuleHandleW(name)) return true;
  }
  return false;
}

FARPROC Missing() {
  SetLastError(ERROR_PROC_NOT_FOUND);
  return nullptr;
}

FARPROC ToAddress(AnyFunction function) {
  return reinterpret_cast<FARPROC>(function);
}

FARPROC WINAPI Find(HMODULE module, const char* name) {
  const std::uint64_t bits = Bits(name);
  if (module == HelpModule()) {
    const bool known = bits == kHtmlHelpOrdinal || (bits > 0xFFFF && std::strcmp(name, "HtmlHelpW") == 0);
    return known ? ToAddress(FindRow("HtmlHelpW")->hook) : Missing();
  }
  const FARPROC real = ::GetProcAddress(module, name);
  if (bits <= 0xFFFF) return real;
  // A simulated function is there even where the host's DLL lacks it, but only in its own DLL.
  const FunctionRow* row = FindRow(name);
  const bool there =
      real != nullptr || (row != nullptr && row->simulated && module == GetModuleHandleA(row->dll));
  if (row != nullptr && there) return ToAddress(row->hook);
  if (real == nullptr || !IsOfSimulatedDll(module)) return real;
  const CLastErrorKeeper keeper;
  CurrentGate()->Violate(std::string(name) + " is not simulated");
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

std::span<const FunctionRow> ModuleRows() {
  return kRows;
}

}  // namespace workbench
