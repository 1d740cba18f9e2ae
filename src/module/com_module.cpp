#include "module/com_module.h"

#include <oleauto.h>

#include <cwchar>
#include <string>
#include <vector>

#include "base/module_instance.h"
#include "base/unique_handle.h"

// oleaut32 has had these since Windows Vista; mingw-w64's headers leave them out.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpDirectory);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID locale,
                                                   SYSKIND system);

namespace {

template <class Interface>
struct ComPointerTraits {
  using Handle = Interface*;
  static Handle Invalid() noexcept { return nullptr; }
  static void Close(Handle handle) noexcept { handle->Release(); }
};
using CTypeLibPointer = CUniqueHandle<ComPointerTraits<ITypeLib>>;

// Longest path that Windows knows, terminator included.
constexpr DWORD kLongestPath = 32768;

// The type library among the resources of the module, and the path of the module's file.
HRESULT LoadOwnTypeLibrary(const CAtlModule& module, CWideString& path, CTypeLibPointer& library) {
  const HRESULT result = module.GetFilePath(path);
  return FAILED(result) ? result : LoadTypeLib(path.Text(), library.Put());
}

// The folder of a file, which is where the type library's help is looked for.
std::wstring FolderOf(const CWideString& path) {
  const std::wstring_view view = path.View();
  const std::size_t last = view.find_last_of(L'\\');
  return std::wstring(view.substr(0, last == std::wstring_view::npos ? 0 : last));
}

HRESULT RemoveRegistration(const TLIBATTR& id) {
  const auto remove = CAtlModule::IsPerUserRegistration() ? UnRegisterTypeLibForUser : UnRegisterTypeLib;
  return remove(id.guid, id.wMajorVerNum, id.wMinorVerNum, id.lcid, id.syskind);
}

// The factory of one class, made on first use.
HRESULT FactoryOf(ComClassEntry& entry, SRWLOCK& creation, IUnknown*& factory) noexcept {
  AcquireSRWLockExclusive(&creation);
  const HRESULT result = entry.factory ? S_OK : entry.createFactory(&entry.factory);
  factory = entry.factory;
  ReleaseSRWLockExclusive(&creation);
  return result;
}

}  // namespace

HRESULT CAtlModule::GetFilePath(CWideString& path) const {
  std::vector<wchar_t> buffer(kLongestPath);
  const DWORD length = GetModuleFileNameW(ModuleInstance(), buffer.data(), kLongestPath);
  if (length == 0) return HRESULT_FROM_WIN32(GetLastError());
  path = CWideString(std::wstring_view(buffer.data(), length));
  return S_OK;
}

HRESULT CAtlModule::RegisterTypeLibrary() const {
  CWideString path;
  CTypeLibPointer library;
  const HRESULT result = LoadOwnTypeLibrary(*this, path, library);
  if (FAILED(result)) return result;
  // The headers of some releases declare the parameters as writable text; neither function writes.
  std::wstring file(path.View());
  std::wstring help = FolderOf(path);
  return IsPerUserRegistration() ? RegisterTypeLibForUser(library.Get(), file.data(), help.data())
                                 : RegisterTypeLib(library.Get(), file.data(), help.data());
}

HRESULT CAtlModule::UnregisterTypeLibrary() const {
  CWideString path;
  CTypeLibPointer library;
  HRESULT result = LoadOwnTypeLibrary(*this, path, library);
  if (FAILED(result)) return result;
  TLIBATTR* attributes = nullptr;
  result = library.Get()->GetLibAttr(&attributes);
  if (FAILED(result)) return result;
  result = RemoveRegistration(*attributes);
  library.Get()->ReleaseTLibAttr(attributes);
  return result;
}

bool CAtlModule::IsPerUserRegistration() noexcept {
  wchar_t value[4];
  return GetEnvironmentVariableW(L"OAPERUSERTLIBREG", value, 4) == 1 && value[0] == L'1';
}

HRESULT GetClassObjectFrom(std::span<ComClassEntry> classes, SRWLOCK& creation, REFCLSID classId,
                           REFIID interfaceId, void** object) noexcept {
  for (ComClassEntry& entry : classes) {
    if (!IsEqualGUID(*entry.classId, classId)) continue;
    IUnknown* factory = nullptr;
    const HRESULT result = FactoryOf(entry, creation, factory);
    return FAILED(result) ? result : factory->QueryInterface(interfaceId, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

bool CKdUUIModule::IsInitialised() const noexcept {
  return ModuleInstance() != nullptr;
}

HRESULT CKdUUIModule::GetScriptReplacements(std::array<ScriptReplacement, 2>& replacements) const {
  CWideString file;
  const HRESULT result = GetFilePath(file);
  if (FAILED(result)) return result;
  // Kept on purpose: two module names
  replacements = {ScriptReplacement{L"APPID", CWideString()}, ScriptReplacement{L"MODULE", file}};
  return S_OK;
}

CKdUUIModule& ComModule() noexcept {
  static constinit CKdUUIModule module;
  return module;
}
