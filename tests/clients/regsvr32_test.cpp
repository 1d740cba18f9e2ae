// The platform's registration tool.
#include <process.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "client.h"

namespace {

constexpr wchar_t kLibraryKey[] = L"TypeLib\\{E39B6F12-C847-4E0A-9D31-6A2F8B05C7D4}";

std::intptr_t Regsvr32(const wchar_t* options) {
  const std::wstring dll = L'"' + (ProgramFolder() / L"KdUUI10.DLL").wstring() + L'"';
  return _wspawnlp(_P_WAIT, L"regsvr32.exe", L"regsvr32.exe", options, dll.c_str(), nullptr);
}

TEST(Regsvr32, RegistersTheTypeLibraryAndRemovesItOnce) {
  SKIP_OUTSIDE_THROW_AWAY_PREFIX();
  const std::vector<std::wstring> classes = RegistryKeys(HKEY_CLASSES_ROOT, L"");
  const std::vector<std::wstring> libraries = RegistryKeys(HKEY_CLASSES_ROOT, L"TypeLib");
  ASSERT_EQ(Regsvr32(L"/s"), 0);
  const std::wstring file =
      RegistryText(HKEY_CLASSES_ROOT, std::wstring(kLibraryKey) + L"\\1.0\\0\\win64", nullptr);
  EXPECT_EQ(file, (ProgramFolder() / L"KdUUI10.DLL").wstring());
  ASSERT_EQ(Regsvr32(L"/s /u"), 0);
  EXPECT_EQ(RegistryKeys(HKEY_CLASSES_ROOT, L"TypeLib"), libraries);
  EXPECT_EQ(RegistryKeys(HKEY_CLASSES_ROOT, L""), classes);
  EXPECT_NE(Regsvr32(L"/s /u"), 0) << "nothing is left to remove";
}

}  // namespace
