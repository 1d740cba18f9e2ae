// The example INF files, read with the platform's own reader: syntax, and that every name in them leads
// somewhere - sections to sections, files to a source and a folder, functions to exports of the DLL.
#include <windows.h>

#include <setupapi.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "workbench/machine/dll.h"

namespace {

using Fields = std::vector<std::wstring>;  // of one line, its key first

std::string Narrow(const std::wstring& text) {
  return std::string(text.begin(), text.end());
}

struct Line {
  std::wstring section;
  Fields fields;
};

class Inf {
 public:
  explicit Inf(const std::wstring& path) {
    UINT line = 0;
    inf_ = SetupOpenInfFileW(path.c_str(), nullptr, INF_STYLE_WIN4, &line);
    if (inf_ == INVALID_HANDLE_VALUE) {
      throw std::runtime_error("line " + std::to_string(line) + ", error " + std::to_string(GetLastError()));
    }
  }
  ~Inf() { SetupCloseInfFile(inf_); }
  Inf(const Inf&) = delete;
  Inf& operator=(const Inf&) = delete;

  // Of all sections.
  [[nodiscard]] std::vector<Line> Lines() const {
    std::vector<Line> lines;
    wchar_t name[256];
    for (UINT i = 0; SetupEnumInfSectionsW(inf_, i, name, 256, nullptr); ++i) {
      for (Fields& fields : Lines(name)) lines.push_back({name, std::move(fields)});
    }
    return lines;
  }
  [[nodiscard]] bool HasSection(const std::wstring& name) const {
    return SetupGetLineCountW(inf_, name.c_str()) >= 0;
  }
  [[nodiscard]] std::vector<Fields> Lines(const std::wstring& section) const {
    std::vector<Fields> lines;
    INFCONTEXT at;
    if (!SetupFindFirstLineW(inf_, section.c_str(), nullptr, &at)) return lines;
    do lines.push_back(FieldsOf(at));
    while (SetupFindNextLine(&at, &at));
    return lines;
  }

 private:
  static Fields FieldsOf(INFCONTEXT& at) {
    Fields fields;
    for (DWORD i = 0; i <= SetupGetFieldCount(&at); ++i) {
      wchar_t text[512] = L"";
      SetupGetStringFieldW(&at, i, text, 512, nullptr);
      fields.emplace_back(text);
    }
    return fields;
  }

  HINF inf_;
};

bool IsDirective(const Fields& line, const wchar_t* name) {
  return _wcsicmp(line[0].c_str(), name) == 0;
}

// The sections that a line of an install section refers to.
Fields SectionsNamedBy(const Fields& line) {
  for (const wchar_t* directive : {L"CopyFiles", L"AddReg"}) {
    if (IsDirective(line, directive)) return Fields(line.begin() + 1, line.end());
  }
  if (IsDirective(line, L"AddService")) return {line.at(3)};
  return {};
}

bool HasKey(const Inf& inf, const std::wstring& section, const std::wstring& key) {
  const std::vector<Fields> lines = inf.Lines(section);
  return std::any_of(lines.begin(), lines.end(),
                     [&](const Fields& line) { return IsDirective(line, key.c_str()); });
}

// One of the example files, beside the DLL.
class ExampleInf : public testing::TestWithParam<const wchar_t*> {
 protected:
  [[nodiscard]] static std::wstring Path() {
    const std::wstring dll = workbench::Dll::DefaultPath();
    return dll.substr(0, dll.rfind(L'\\')) + L"\\examples\\" + GetParam();
  }
  const Inf inf_{Path()};
};

TEST_P(ExampleInf, EverySectionThatIsNamedIsThere) {
  int named = 0;
  for (const auto& [section, line] : inf_.Lines()) {
    for (const std::wstring& name : SectionsNamedBy(line)) {
      EXPECT_TRUE(inf_.HasSection(name)) << Narrow(section) << " names " << Narrow(name);
      ++named;
    }
  }
  EXPECT_GE(named, 5);
}

TEST_P(ExampleInf, ModelsAreDecoratedForTheDllsProcessorAndLeadToAnInstallSection) {
  const Fields maker = inf_.Lines(L"Manufacturer").at(0);
  ASSERT_EQ(maker.at(2), L"NTamd64");
  const std::vector<Fields> models = inf_.Lines(maker[1] + L"." + maker[2]);
  ASSERT_FALSE(models.empty());
  for (const Fields& model : models) EXPECT_TRUE(inf_.HasSection(model.at(1) + L".NT")) << Narrow(model[1]);
}

TEST_P(ExampleInf, EveryCopiedFileHasASourceAndAFolder) {
  int files = 0;
  for (const auto& [section, line] : inf_.Lines()) {
    if (!IsDirective(line, L"CopyFiles")) continue;
    EXPECT_TRUE(HasKey(inf_, L"DestinationDirs", line.at(1))) << Narrow(line[1]);
    for (const Fields& file : inf_.Lines(line[1])) {
      EXPECT_TRUE(HasKey(inf_, L"SourceDisksFiles", file[0])) << Narrow(file[0]);
      ++files;
    }
  }
  EXPECT_EQ(files, 2);
}

// "file,function" of every value by which Windows finds the DLL.
TEST_P(ExampleInf, NamesFunctionsThatTheDllExports) {
  const HMODULE dll = LoadLibraryW(workbench::Dll::DefaultPath().c_str());
  ASSERT_NE(dll, nullptr);
  int entries = 0;
  for (const auto& [section, line] : inf_.Lines()) {
    if (line.size() < 6 || (line[3] != L"CoInstallers32" && line[3] != L"EnumPropPages32")) continue;
    const std::string entry = Narrow(line[5]);
    EXPECT_THAT(entry, testing::StartsWith("KdUUI10.DLL,"));
    EXPECT_NE(GetProcAddress(dll, entry.substr(entry.find(',') + 1).c_str()), nullptr) << entry;
    ++entries;
  }
  EXPECT_GT(entries, 0);
  FreeLibrary(dll);
}

// A %name% that [Strings] does not have is left standing.
TEST_P(ExampleInf, EveryTextIsDefined) {
  for (const auto& [section, line] : inf_.Lines()) {
    for (const std::wstring& field : line) {
      const bool directory = field.starts_with(L"%12%");
      EXPECT_TRUE(directory || field.find(L'%') == std::wstring::npos)
          << Narrow(section) << ": " << Narrow(field);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Files, ExampleInf,
                         testing::Values(L"kdui10-example.inf", L"kdui10-example-port.inf"),
                         [](const auto& parameter) {
                           return std::wstring(parameter.param) == L"kdui10-example.inf" ? "Server" : "Port";
                         });

}  // namespace
