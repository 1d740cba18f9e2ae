// The file that ships: what it exports and imports, how it is hardened, what it says about itself.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "workbench/machine/dll.h"

namespace {

using testing::AnyOf;
using testing::StrCaseEq;

// The loaded DLL's own headers.
class ModuleImage : public testing::Test {
 protected:
  template <class T>
  const T* At(DWORD address) const {
    return reinterpret_cast<const T*>(reinterpret_cast<const unsigned char*>(dll_.Module()) + address);
  }
  DWORD Directory(unsigned entry) const {
    return headers_->OptionalHeader.DataDirectory[entry].VirtualAddress;
  }

  workbench::Machine machine_;
  const workbench::Dll dll_{machine_};
  const std::filesystem::path file_ = workbench::Dll::DefaultPath();
  const IMAGE_NT_HEADERS64* headers_ =
      At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
};

TEST_F(ModuleImage, ExportsExactlyTheContract) {
  const auto* table = At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT));
  std::vector<std::string> names;
  for (DWORD index = 0; index < table->NumberOfNames; ++index) {
    names.emplace_back(At<char>(At<DWORD>(table->AddressOfNames)[index]));
  }
  EXPECT_THAT(names, testing::UnorderedElementsAre(
                         "DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer",
                         "KdChangeComNumber", "KdNPortNetworkInfoUpdate", "KdNPortSettingsUpdate",
                         "KdUCoInstallCard", "KdUCoInstallPort", "KdUPortPropPage", "KdUpdateDriver"));
  EXPECT_EQ(table->NumberOfFunctions, table->NumberOfNames) << "an export without a name";
  EXPECT_STREQ(At<char>(table->Name), "KdUUI10.DLL");
}

// An installer loads the DLL for every step, and the libraries listed here are those that it has anyway.
// A library that shows up in addition is missing from delay_imports.S.
TEST_F(ModuleImage, ImportsOnlyWhatAnInstallerHasLoaded) {
  const auto* const rows = At<IMAGE_IMPORT_DESCRIPTOR>(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
  for (const auto* row = rows; row->Name != 0; ++row) {
    EXPECT_THAT(At<char>(row->Name),
                AnyOf(StrCaseEq("advapi32.dll"), StrCaseEq("cfgmgr32.dll"), StrCaseEq("gdi32.dll"),
                      StrCaseEq("kernel32.dll"), StrCaseEq("msvcrt.dll"), StrCaseEq("setupapi.dll"),
                      StrCaseEq("user32.dll")));
  }
}

TEST_F(ModuleImage, IsHardenedReproducibleAndStripped) {
  const WORD wanted = IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA | IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE |
                      IMAGE_DLLCHARACTERISTICS_NX_COMPAT;
  EXPECT_EQ(headers_->OptionalHeader.DllCharacteristics & wanted, wanted);
  EXPECT_NE(Directory(IMAGE_DIRECTORY_ENTRY_BASERELOC), 0u) << "cannot be moved in memory";
  EXPECT_EQ(headers_->FileHeader.TimeDateStamp, 0u) << "two builds would differ";
  EXPECT_EQ(headers_->FileHeader.NumberOfSymbols, 0u);
}

TEST_F(ModuleImage, IsSmallAndHasItsDebugInformationBesideIt) {
#ifndef KDUUI_TRAPS  // which take room, and are not shipped
  EXPECT_LT(std::filesystem::file_size(file_), 300'000u);
#endif
  EXPECT_TRUE(std::filesystem::exists(file_.native() + L".debug"));
}

// Also that of kdport.exe, which is handed out with it.
TEST_F(ModuleImage, VersionBlockSaysWhatItIs) {
  const auto check = [](HMODULE module, DWORD type, const wchar_t* file) {
    const HRSRC place = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    ASSERT_NE(place, nullptr);
    const auto* data = static_cast<const unsigned char*>(LockResource(LoadResource(module, place)));
    // VS_VERSIONINFO: lengths, type, the key "VS_VERSION_INFO" and padding take 40 bytes.
    const auto* info = reinterpret_cast<const VS_FIXEDFILEINFO*>(data + 40);
    ASSERT_EQ(info->dwSignature, 0xFEEF04BDu);
    EXPECT_EQ(info->dwFileType, type);
    EXPECT_EQ(info->dwFileVersionMS, info->dwProductVersionMS);
    EXPECT_GE(HIWORD(info->dwFileVersionMS), 1u);

    const std::wstring block(reinterpret_cast<const wchar_t*>(data), SizeofResource(module, place) / 2);
    for (const wchar_t* text : {L"Keldrin", L"Veltranet", file, L"\u00A9 Keldrin"}) {
      EXPECT_NE(block.find(text), std::wstring::npos) << "no \"" << text << "\"";
    }
  };
  check(dll_.Module(), VFT_DLL, L"KdUUI10.DLL");
  const auto kdport = file_.parent_path() / L"kdport.exe";
  check(LoadLibraryExW(kdport.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE), VFT_APP, L"kdport.exe");
}

}  // namespace
