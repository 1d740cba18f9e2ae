// The four COM entry points of the DLL against the platform's own oleaut32, in the sandboxed registry.
#include <windows.h>

#include <oleauto.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "workbench/machine/dll.h"

namespace {

constexpr CLSID kPropertyPage = {
    0x7A41C3E0, 0x2D95, 0x4B18, {0xB6, 0xF4, 0x91, 0xE0, 0xC2, 0x7D, 0x5A, 0x38}};
constexpr GUID kLibrary = {0xE39B6F12, 0xC847, 0x4E0A, {0x9D, 0x31, 0x6A, 0x2F, 0x8B, 0x05, 0xC7, 0xD4}};
const std::wstring kVersionKey = L"TypeLib\\{E39B6F12-C847-4E0A-9D31-6A2F8B05C7D4}\\1.0";

// The default text of a key below HKEY_CLASSES_ROOT; empty when there is none.
std::wstring TextOf(const std::wstring& key) {
  wchar_t text[MAX_PATH] = L"";
  DWORD size = sizeof text;
  RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &size);
  return text;
}

class ComServer : public testing::Test {
 protected:
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

TEST_F(ComServer, RegisteredTypeLibraryIsFoundUntilItIsRemoved) {
  ASSERT_EQ(dll_.RegisterServer(), S_OK);
  EXPECT_EQ(TextOf(kVersionKey), L"KdUUI 1.0 Type Library");
  const std::wstring path = workbench::Dll::DefaultPath();
  EXPECT_EQ(TextOf(kVersionKey + L"\\HELPDIR"), path.substr(0, path.rfind(L'\\')));
  EXPECT_EQ(TextOf(L"KdUUILib.PropPage"), L"") << "the class script is data";

  ITypeLib* library = nullptr;
  ASSERT_EQ(LoadRegTypeLib(kLibrary, 1, 0, LOCALE_NEUTRAL, &library), S_OK);
  ITypeInfo* page = nullptr;
  EXPECT_EQ(library->GetTypeInfoOfGuid(kPropertyPage, &page), S_OK);
  if (page) page->Release();
  EXPECT_EQ(library->GetTypeInfoCount(), 1u);
  library->Release();

  ASSERT_EQ(dll_.RegisterServer(), S_OK) << "a second time";
  ASSERT_EQ(dll_.UnregisterServer(), S_OK);
  EXPECT_TRUE(FAILED(LoadRegTypeLib(kLibrary, 1, 0, LOCALE_NEUTRAL, &library)));
}

TEST_F(ComServer, ThreadsLocaleIsTheSystemsForTheStepsOnly) {
  const LCID before = GetThreadLocale();
  const LCID german = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
  ASSERT_TRUE(SetThreadLocale(german));
  machine_.Calls().Inject({.function = "RegisterTypeLib"});
  EXPECT_EQ(dll_.RegisterServer(), TYPE_E_REGISTRYACCESS);
  EXPECT_EQ(GetThreadLocale(), german);
  SetThreadLocale(before);
  EXPECT_EQ(machine_.Calls().CallsOf("SetThreadLocale").at(0).Number(0), 0x800u) << "the system's default";
}

// Both registrations end in the same place on Wine, so it is the calls that tell.
TEST_F(ComServer, EnvironmentDecidesWhetherItIsRegisteredForTheUser) {
  for (const wchar_t* const forUser : {L"1", L"0"}) {
    SetEnvironmentVariableW(L"OAPERUSERTLIBREG", forUser);
    EXPECT_EQ(dll_.RegisterServer(), S_OK);
    EXPECT_EQ(dll_.UnregisterServer(), S_OK);
  }
  EXPECT_EQ(machine_.Calls().OrderOf({"RegisterTypeLib", "UnRegisterTypeLib", "RegisterTypeLibForUser",
                                      "UnRegisterTypeLibForUser"}),
            (std::vector<std::string>{"RegisterTypeLibForUser", "UnRegisterTypeLibForUser", "RegisterTypeLib",
                                      "UnRegisterTypeLib"}));
}

// Data that nothing in the DLL applies.
TEST_F(ComServer, RegistrationScriptsAreThoseOfTheClassAndTheApplication) {
  const std::pair<WORD, const char*> scripts[] = {{101, "'%APPID%' = s 'KdUUI'"},
                                                  {106, "val ThreadingModel = s 'Apartment'"}};
  for (const auto& [id, part] : scripts) {
    const HRSRC place = FindResourceW(dll_.Module(), MAKEINTRESOURCEW(id), L"REGISTRY");
    ASSERT_NE(place, nullptr) << id;
    const auto* text = static_cast<const char*>(LockResource(LoadResource(dll_.Module(), place)));
    const std::string script(text, SizeofResource(dll_.Module(), place));
    EXPECT_THAT(script, testing::HasSubstr(part));
  }
}

}  // namespace
