// The four COM entry points of the DLL against the platform's own oleaut32, in the sandboxed registry.
#include <windows.h>

#include <oleauto.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "base/unique_handle.h"
#include "workbench/machine/machine.h"

namespace {

constexpr CLSID kPropertyPage = {
    0x7A41C3E0, 0x2D95, 0x4B18, {0xB6, 0xF4, 0x91, 0xE0, 0xC2, 0x7D, 0x5A, 0x38}};
constexpr GUID kLibrary = {0xE39B6F12, 0xC847, 0x4E0A, {0x9D, 0x31, 0x6A, 0x2F, 0x8B, 0x05, 0xC7, 0xD4}};
constexpr wchar_t kVersionKey[] = L"TypeLib\\{E39B6F12-C847-4E0A-9D31-6A2F8B05C7D4}\\1.0";

// Every key below `key`.
void AddKeys(HKEY key, const std::wstring& path, std::set<std::wstring>& paths) {
  wchar_t name[256];
  for (DWORD i = 0, size = 256;
       RegEnumKeyExW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, size = 256) {
    paths.insert(path + L"\\" + name);
    CRegistryKey child;
    if (RegOpenKeyExW(key, name, 0, KEY_READ, child.Put()) != ERROR_SUCCESS) continue;
    AddKeys(child.Get(), path + L"\\" + name, paths);
  }
}

std::set<std::wstring> RegistryKeys() {
  std::set<std::wstring> paths;
  AddKeys(HKEY_CLASSES_ROOT, L"Classes", paths);
  AddKeys(HKEY_CURRENT_USER, L"User", paths);
  AddKeys(HKEY_LOCAL_MACHINE, L"Machine", paths);
  return paths;
}

std::wstring TextOfVersion(const std::wstring& below) {
  wchar_t text[MAX_PATH] = L"";
  DWORD size = sizeof text;
  RegGetValueW(HKEY_CLASSES_ROOT, (kVersionKey + below).c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text,
               &size);
  return text;
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
  for (const CLSID& id : {kPropertyPage, kLibrary, GUID{}}) {
    void* object = this;
    EXPECT_EQ(dll_.ClassObject(id, IID_IUnknown, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
  }
  EXPECT_EQ(dll_.ClassObject(kPropertyPage, IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(dll_.CanUnloadNow(), S_OK);
}

TEST_F(ComServer, RegisteredTypeLibraryIsFoundAndRemovedWithoutATrace) {
  // Shared with every other library: no machine is without it, and oleaut32 leaves it.
  CRegistryKey libraries;
  ASSERT_EQ(RegCreateKeyW(HKEY_CLASSES_ROOT, L"TypeLib", libraries.Put()), ERROR_SUCCESS);
  const std::set<std::wstring> before = RegistryKeys();
  EXPECT_TRUE(FAILED(dll_.UnregisterServer())) << "nothing is registered yet";
  ASSERT_EQ(dll_.RegisterServer(), S_OK);
  EXPECT_EQ(TextOfVersion(L""), L"KdUUI 1.0 Type Library");
  EXPECT_EQ(TextOfVersion(L"\\0\\win64"), DllPath());
  EXPECT_EQ(TextOfVersion(L"\\HELPDIR"), DllPath().substr(0, DllPath().rfind(L'\\')));
  const std::set<std::wstring> registered = RegistryKeys();
  EXPECT_FALSE(registered.contains(L"Classes\\AppID")) << "the application script is data";
  EXPECT_FALSE(registered.contains(L"Classes\\KdUUILib.PropPage")) << "the class script is data";

  ITypeLib* library = nullptr;
  ASSERT_EQ(LoadRegTypeLib(kLibrary, 1, 0, LOCALE_NEUTRAL, &library), S_OK);
  ITypeInfo* page = nullptr;
  EXPECT_EQ(library->GetTypeInfoOfGuid(kPropertyPage, &page), S_OK);
  if (page) page->Release();
  EXPECT_EQ(library->GetTypeInfoCount(), 1u);
  library->Release();

  ASSERT_EQ(dll_.RegisterServer(), S_OK) << "a second time";
  ASSERT_EQ(dll_.UnregisterServer(), S_OK);
  EXPECT_THAT(RegistryKeys(), testing::ContainerEq(before));
}

TEST_F(ComServer, ThreadsLocaleIsTheSystemsForTheStepsOnly) {
  const LCID before = GetThreadLocale();
  const LCID german = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
  ASSERT_TRUE(SetThreadLocale(german));
  for (const char* failing : {"LoadTypeLib", "RegisterTypeLib"}) {
    machine_.Calls().Inject({.function = failing});
    EXPECT_EQ(dll_.RegisterServer(), TYPE_E_REGISTRYACCESS) << failing;
    EXPECT_EQ(GetThreadLocale(), german) << failing;
    machine_.Calls().ClearFaults();
  }
  EXPECT_EQ(dll_.RegisterServer(), S_OK);
  EXPECT_EQ(dll_.UnregisterServer(), S_OK);
  EXPECT_EQ(GetThreadLocale(), german);
  SetThreadLocale(before);
  EXPECT_EQ(machine_.Calls().CallsOf("SetThreadLocale").at(0).Number(0), 0x800u) << "the system's default";
}

// Both registrations end in the same place on Wine, so it is the calls that tell.
TEST_F(ComServer, EnvironmentDecidesWhetherItIsRegisteredForTheUser) {
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

// Data that nothing in the DLL applies. Blanks do not count.
TEST_F(ComServer, RegistrationScriptsAreThoseOfTheClassAndTheApplication) {
  const std::pair<WORD, const char*> scripts[] = {
      {101, "HKCR { NoRemove AppID { '%APPID%' = s 'KdUUI' 'KdUUI20.DLL' { val AppID = s '%APPID%' } } }"},
      {106,
       "HKCR { KdUUILib.PropPage.1 = s 'PropPage Class' { CLSID = s '{7A41C3E0-2D95-4B18-B6F4-91E0C27D5A38}' "
       "} "
       "KdUUILib.PropPage = s 'PropPage Class' { CLSID = s '{7A41C3E0-2D95-4B18-B6F4-91E0C27D5A38}' "
       "CurVer = s 'KdUUILib.PropPage.1' } "
       "NoRemove CLSID { ForceRemove {7A41C3E0-2D95-4B18-B6F4-91E0C27D5A38} = s 'PropPage Class' { "
       "ProgID = s 'KdUUILib.PropPage.1' VersionIndependentProgID = s 'KdUUILib.PropPage' "
       "InprocServer32 = s '%MODULE%' { val ThreadingModel = s 'Apartment' } val AppID = s '%APPID%' "
       "'TypeLib' = s '{E39B6F12-C847-4E0A-9D31-6A2F8B05C7D4}' } } }"},
  };
  for (const auto& [id, expected] : scripts) {
    const HRSRC place = FindResourceW(dll_.Module(), MAKEINTRESOURCEW(id), L"REGISTRY");
    ASSERT_NE(place, nullptr) << id;
    const auto* text = static_cast<const char*>(LockResource(LoadResource(dll_.Module(), place)));
    std::istringstream words(std::string(text, SizeofResource(dll_.Module(), place)));
    std::string script;
    for (std::string word; words >> word;) script += (script.empty() ? "" : " ") + word;
    EXPECT_EQ(script, expected);
  }
}

}  // namespace
