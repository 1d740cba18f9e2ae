// The four COM entry points of the DLL against the platform's own oleaut32, in the sandboxed registry.
#include <windows.h>

#include <oleauto.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "base/unique_handle.h"
#include "module/com_module.h"
#include "workbench/machine/machine.h"

// COM interfaces have no virtual destructor: Release is what frees.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// The registrar of the platform's class framework, which reads registration scripts out of a module.
// Not in the unnamed namespace: the compiler would conclude that nothing implements it.
struct IRegistrar : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE AddReplacement(LPCOLESTR key, LPCOLESTR item) = 0;
  virtual HRESULT STDMETHODCALLTYPE ClearReplacements() = 0;
  virtual HRESULT STDMETHODCALLTYPE ResourceRegisterSz(LPCOLESTR file, LPCOLESTR id, LPCOLESTR type) = 0;
  virtual HRESULT STDMETHODCALLTYPE ResourceUnregisterSz(LPCOLESTR file, LPCOLESTR id, LPCOLESTR type) = 0;
  virtual HRESULT STDMETHODCALLTYPE FileRegister(LPCOLESTR file) = 0;
  virtual HRESULT STDMETHODCALLTYPE FileUnregister(LPCOLESTR file) = 0;
  virtual HRESULT STDMETHODCALLTYPE StringRegister(LPCOLESTR script) = 0;
  virtual HRESULT STDMETHODCALLTYPE StringUnregister(LPCOLESTR script) = 0;
  virtual HRESULT STDMETHODCALLTYPE ResourceRegister(LPCOLESTR file, UINT id, LPCOLESTR type) = 0;
  virtual HRESULT STDMETHODCALLTYPE ResourceUnregister(LPCOLESTR file, UINT id, LPCOLESTR type) = 0;
};

namespace {

constexpr CLSID kPropertyPage = {
    0x7A41C3E0, 0x2D95, 0x4B18, {0xB6, 0xF4, 0x91, 0xE0, 0xC2, 0x7D, 0x5A, 0x38}};
constexpr wchar_t kLibraryKey[] = L"TypeLib\\{E39B6F12-C847-4E0A-9D31-6A2F8B05C7D4}";

// Every key and value below `key`, one line each.
void Describe(HKEY key, const std::wstring& path, std::set<std::wstring>& lines) {
  lines.insert(path);
  wchar_t name[1024];
  for (DWORD i = 0, size = 1024;
       RegEnumValueW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, size = 1024) {
    lines.insert(path + L"!" + name);
  }
  for (DWORD i = 0, size = 1024;
       RegEnumKeyExW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, size = 1024) {
    CRegistryKey child;
    if (RegOpenKeyExW(key, name, 0, KEY_READ, child.Put()) != ERROR_SUCCESS) continue;
    Describe(child.Get(), path + L"\\" + name, lines);
  }
}

std::set<std::wstring> Registry() {
  std::set<std::wstring> lines;
  Describe(HKEY_CLASSES_ROOT, L"Classes", lines);
  Describe(HKEY_CURRENT_USER, L"User", lines);
  Describe(HKEY_LOCAL_MACHINE, L"Machine", lines);
  return lines;
}

std::wstring ClassesText(const std::wstring& path, const wchar_t* name = nullptr) {
  wchar_t text[1024];
  DWORD size = sizeof text;
  const LSTATUS status =
      RegGetValueW(HKEY_CLASSES_ROOT, path.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
  return status == ERROR_SUCCESS ? text : L"(error " + std::to_wstring(status) + L")";
}

bool HasClassesKey(const std::wstring& path) {
  CRegistryKey key;
  return RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

class ComServer : public testing::Test {
 protected:
  [[nodiscard]] std::wstring DllPath() const {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(dll_.Module(), path, MAX_PATH);
    return path;
  }

  workbench::Machine machine_;
  workbench::Dll dll_{machine_};
};

TEST_F(ComServer, HasNoClassToGiveOut) {
  for (const CLSID& id : {kPropertyPage, CKdUUIModule::libraryId, GUID{}}) {
    void* object = this;
    EXPECT_EQ(dll_.ClassObject(id, IID_IUnknown, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
  }
  EXPECT_EQ(dll_.ClassObject(kPropertyPage, IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(dll_.CanUnloadNow(), S_OK);
}

TEST_F(ComServer, RegistersItsTypeLibraryAndRemovesItWithoutATrace) {
  // Shared with every other library: no machine is without it, and oleaut32 leaves it.
  CRegistryKey libraries;
  ASSERT_EQ(RegCreateKeyW(HKEY_CLASSES_ROOT, L"TypeLib", libraries.Put()), ERROR_SUCCESS);
  const std::set<std::wstring> before = Registry();
  ASSERT_EQ(dll_.RegisterServer(), S_OK);
  const std::wstring version = std::wstring(kLibraryKey) + L"\\1.0";
  EXPECT_EQ(ClassesText(version), L"KdUUI 1.0 Type Library");
  EXPECT_EQ(ClassesText(version + L"\\0\\win64"), DllPath());
  EXPECT_EQ(ClassesText(version + L"\\HELPDIR"), DllPath().substr(0, DllPath().rfind(L'\\')));
  EXPECT_FALSE(HasClassesKey(L"AppID")) << "the application script is data";
  EXPECT_FALSE(HasClassesKey(L"KdUUILib.PropPage")) << "the class script is data";
  ASSERT_EQ(dll_.RegisterServer(), S_OK) << "a second time";
  ASSERT_EQ(dll_.UnregisterServer(), S_OK);
  EXPECT_THAT(Registry(), testing::ContainerEq(before));
}

TEST_F(ComServer, RegisteredLibraryIsFoundByItsIdAndNamesThePage) {
  ASSERT_EQ(dll_.RegisterServer(), S_OK);
  ITypeLib* library = nullptr;
  ASSERT_EQ(LoadRegTypeLib(CKdUUIModule::libraryId, 1, 0, LOCALE_NEUTRAL, &library), S_OK);
  ITypeInfo* page = nullptr;
  EXPECT_EQ(library->GetTypeInfoOfGuid(kPropertyPage, &page), S_OK);
  if (page) page->Release();
  EXPECT_EQ(library->GetTypeInfoCount(), 1u);
  library->Release();
  EXPECT_EQ(dll_.UnregisterServer(), S_OK);
}

TEST_F(ComServer, UnregisteringWhatIsNotRegisteredSaysSo) {
  // TYPE_E_REGISTRYACCESS on Windows, E_INVALIDARG on Wine
  EXPECT_TRUE(FAILED(dll_.UnregisterServer()));
}

TEST_F(ComServer, LeavesTheThreadsLocaleAsItWas) {
  const LCID before = GetThreadLocale();
  const LCID german = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
  ASSERT_TRUE(SetThreadLocale(german));
  EXPECT_EQ(dll_.RegisterServer(), S_OK);
  EXPECT_EQ(GetThreadLocale(), german);
  EXPECT_EQ(dll_.UnregisterServer(), S_OK);
  EXPECT_EQ(GetThreadLocale(), german);
  SetThreadLocale(before);
  EXPECT_EQ(machine_.Calls().CallsOf("SetThreadLocale").at(0).Number(0), 0x800u) << "the system's default";
}

// Both registrations end in the same place on Wine, so it is the calls that tell.
TEST_F(ComServer, IsRegisteredForTheUserWhereWindowsIsToldSo) {
  const struct {
    const wchar_t* environment;
    std::vector<std::string> calls;
  } cases[] = {
      {L"1", {"RegisterTypeLibForUser", "UnRegisterTypeLibForUser"}},
      {L"0", {"RegisterTypeLib", "UnRegisterTypeLib"}},
      {nullptr, {"RegisterTypeLib", "UnRegisterTypeLib"}},
  };
  for (const auto& one : cases) {
    machine_.Calls().ClearLog();
    SetEnvironmentVariableW(L"OAPERUSERTLIBREG", one.environment);
    EXPECT_EQ(dll_.RegisterServer(), S_OK);
    EXPECT_EQ(dll_.UnregisterServer(), S_OK);
    EXPECT_EQ(machine_.Calls().OrderOf({"RegisterTypeLib", "UnRegisterTypeLib", "RegisterTypeLibForUser",
                                        "UnRegisterTypeLibForUser"}),
              one.calls);
  }
}

TEST_F(ComServer, FirstFailingStepIsTheResult) {
  for (const char* step : {"LoadTypeLib", "RegisterTypeLib"}) {
    const LCID locale = GetThreadLocale();
    machine_.Calls().Inject({.function = step});
    EXPECT_EQ(dll_.RegisterServer(), TYPE_E_REGISTRYACCESS) << step;
    EXPECT_EQ(GetThreadLocale(), locale) << step;
    machine_.Calls().ClearFaults();
  }
}

// The registrar and its interface.
constexpr CLSID kRegistrar = {0x44EC053A, 0x400F, 0x11D0, {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};
constexpr IID kIRegistrar = {0x44EC053B, 0x400F, 0x11D0, {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};

class RegistrationScripts : public ComServer {
 protected:
  void SetUp() override {
    const HMODULE framework = LoadLibraryW(L"atl.dll");
    ASSERT_NE(framework, nullptr);
    const auto classObject = reinterpret_cast<workbench::Dll::GetClassObject>(
        reinterpret_cast<void (*)()>(GetProcAddress(framework, "DllGetClassObject")));
    IClassFactory* factory = nullptr;
    ASSERT_EQ(classObject(kRegistrar, IID_IClassFactory, reinterpret_cast<void**>(&factory)), S_OK);
    ASSERT_EQ(factory->CreateInstance(nullptr, kIRegistrar, reinterpret_cast<void**>(&registrar_)), S_OK);
    factory->Release();
    ASSERT_EQ(registrar_->AddReplacement(L"APPID", L"{00000000-0000-0000-0000-00000000ABCD}"), S_OK);
    ASSERT_EQ(registrar_->AddReplacement(L"MODULE", L"C:\\module.dll"), S_OK);
  }
  void TearDown() override {
    if (registrar_) registrar_->Release();
  }

  IRegistrar* registrar_ = nullptr;
};

TEST_F(RegistrationScripts, PageScriptWritesTheClassAndTakesItBack) {
  ASSERT_EQ(registrar_->ResourceRegister(DllPath().c_str(), 106, L"REGISTRY"), S_OK);
  const std::wstring classId = L"{7A41C3E0-2D95-4B18-B6F4-91E0C27D5A38}";
  const std::wstring classKey = L"CLSID\\" + classId;
  const struct {
    std::wstring path;
    const wchar_t* name;
    std::wstring text;
  } expected[] = {
      {L"KdUUILib.PropPage.1", nullptr, L"PropPage Class"},
      {L"KdUUILib.PropPage.1\\CLSID", nullptr, classId},
      {L"KdUUILib.PropPage", nullptr, L"PropPage Class"},
      {L"KdUUILib.PropPage\\CLSID", nullptr, classId},
      {L"KdUUILib.PropPage\\CurVer", nullptr, L"KdUUILib.PropPage.1"},
      {classKey, nullptr, L"PropPage Class"},
      {classKey, L"AppID", L"{00000000-0000-0000-0000-00000000ABCD}"},
      {classKey + L"\\ProgID", nullptr, L"KdUUILib.PropPage.1"},
      {classKey + L"\\VersionIndependentProgID", nullptr, L"KdUUILib.PropPage"},
      {classKey + L"\\InprocServer32", nullptr, L"C:\\module.dll"},
      {classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {classKey + L"\\TypeLib", nullptr, L"{E39B6F12-C847-4E0A-9D31-6A2F8B05C7D4}"},
  };
  for (const auto& one : expected) EXPECT_EQ(ClassesText(one.path, one.name), one.text) << one.path.c_str();
  ASSERT_EQ(registrar_->ResourceUnregister(DllPath().c_str(), 106, L"REGISTRY"), S_OK);
  EXPECT_FALSE(HasClassesKey(classKey));
  EXPECT_FALSE(HasClassesKey(L"KdUUILib.PropPage"));
  EXPECT_FALSE(HasClassesKey(L"KdUUILib.PropPage.1"));
  EXPECT_TRUE(HasClassesKey(L"CLSID"));
}

TEST_F(RegistrationScripts, ApplicationScriptKeepsTheOlderModulesName) {
  ASSERT_EQ(registrar_->ResourceRegister(DllPath().c_str(), 101, L"REGISTRY"), S_OK);
  EXPECT_EQ(ClassesText(L"AppID\\{00000000-0000-0000-0000-00000000ABCD}"), L"KdUUI");
  EXPECT_EQ(ClassesText(L"AppID\\KdUUI20.DLL", L"AppID"), L"{00000000-0000-0000-0000-00000000ABCD}");
  ASSERT_EQ(registrar_->ResourceUnregister(DllPath().c_str(), 101, L"REGISTRY"), S_OK);
  EXPECT_FALSE(HasClassesKey(L"AppID\\KdUUI20.DLL"));
  EXPECT_TRUE(HasClassesKey(L"AppID"));
}

}  // namespace
