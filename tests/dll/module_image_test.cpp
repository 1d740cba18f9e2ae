// The file that ships: what it exports and imports, how it is hardened, what it says about itself.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace {

using testing::AnyOf;
using testing::StrCaseEq;

// The loaded DLL's own headers.
class ModuleImage : public testing::Test {
 protected:
  void SetUp() override {
    module_ = LoadLibraryW(L"KdUUI10.DLL");
    ASSERT_NE(module_, nullptr) << "error " << GetLastError();
    base_ = reinterpret_cast<const unsigned char*>(module_);
    const auto* dos = At<IMAGE_DOS_HEADER>(0);
    headers_ = At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(dos->e_lfanew));
  }
  void TearDown() override {
    if (module_ != nullptr) FreeLibrary(module_);
  }

  template <class T>
  const T* At(DWORD address) const {
    return reinterpret_cast<const T*>(base_ + address);
  }
  DWORD Directory(unsigned entry) const {
    return headers_->OptionalHeader.DataDirectory[entry].VirtualAddress;
  }
  const IMAGE_SECTION_HEADER* SectionNamed(const char* name) const {
    const auto* section = IMAGE_FIRST_SECTION(headers_);
    const auto* const end = section + headers_->FileHeader.NumberOfSections;
    while (section != end && std::strncmp(reinterpret_cast<const char*>(section->Name), name, 8) != 0)
      ++section;
    return section != end ? section : nullptr;
  }
  std::filesystem::path File() const {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(module_, path, MAX_PATH);
    return path;
  }

  HMODULE module_ = nullptr;
  const unsigned char* base_ = nullptr;
  const IMAGE_NT_HEADERS64* headers_ = nullptr;
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

// The first call of a delay-loaded function writes its address, which stands behind the pointer to its name.
TEST_F(ModuleImage, AddressesOfDelayLoadedFunctionsAreWritable) {
  const auto* const rdata = SectionNamed(".rdata");
  ASSERT_NE(rdata, nullptr);
  const std::string_view bytes(At<char>(rdata->VirtualAddress), rdata->Misc.VirtualSize);
  for (const std::string function : {"ComDBOpen", "HttpOpenRequestW", "PropertySheetW"}) {
    const std::size_t text = bytes.find('\0' + function + '\0');
    ASSERT_NE(text, bytes.npos) << function;
    const char* const name = bytes.data() + text + 1;
    const std::size_t pointer =
        bytes.find(std::string_view(reinterpret_cast<const char*>(&name), sizeof(name)));
    ASSERT_NE(pointer, bytes.npos) << function;
    MEMORY_BASIC_INFORMATION memory{};
    VirtualQuery(reinterpret_cast<void* const*>(bytes.data() + pointer)[1], &memory, sizeof(memory));
    EXPECT_EQ(memory.AllocationBase, module_) << function;
    EXPECT_TRUE(memory.Protect == PAGE_READWRITE || memory.Protect == PAGE_WRITECOPY)
        << function << memory.Protect;
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
  EXPECT_LT(std::filesystem::file_size(File()), 300'000u);
#endif
  std::filesystem::path debug = File();
  debug += ".debug";
  EXPECT_TRUE(std::filesystem::exists(debug));
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
  check(module_, VFT_DLL, L"KdUUI10.DLL");
  const auto path = File().replace_filename(L"kdport.exe");
  check(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE), VFT_APP, L"kdport.exe");
}

}  // namespace
