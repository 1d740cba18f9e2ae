// load_bench: loading and freeing the DLL, as an installer does for every step of an installation, in a
// process that holds SetupAPI; and the size of the file.
#include <windows.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "measure.h"

namespace {

constexpr double kMostLoad = 1.5;
constexpr double kMostBytes = 300'000;

std::filesystem::path Beside(const wchar_t* name) {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path() / name;
}

bench::Work LoadAndFree(const std::filesystem::path& dll) {
  return {.run = [path = dll] {
    const HMODULE module = LoadLibraryW(path.c_str());
    if (module == nullptr) {
      throw std::runtime_error(path.filename().string() + " cannot be loaded, error " +
                               std::to_string(GetLastError()));
    }
    FreeLibrary(module);
  }};
}

void CompareLoads() {
  const std::filesystem::path dll = Beside(L"KdUUI10.DLL");
  // What an installer has loaded anyway.
  if (LoadLibraryW(L"setupapi.dll") == nullptr) throw std::runtime_error("no SetupAPI");
  const bench::Comparison comparison = bench::Compare(LoadAndFree(dll), LoadAndFree(Beside(L"empty_dll.dll")),
                                                      {.sampleSeconds = 0.05, .batch = 15});
  if (GetModuleHandleW(L"KdUUI10.DLL") != nullptr) throw std::runtime_error("the DLL stays loaded");
  bench::PrintRow("LoadLibrary and FreeLibrary beside SetupAPI", "an empty C++ DLL", comparison, kMostLoad);
}

void PrintSize() {
  const auto bytes = static_cast<double>(std::filesystem::file_size(Beside(L"KdUUI10.DLL")));
  char text[32];
  std::snprintf(text, sizeof text, "%.0f bytes", bytes);
  bench::PrintRow("Size of the DLL", text, "300000 bytes", bytes / kMostBytes, 1.0);
}

}  // namespace

int main() {
  try {
    CompareLoads();
    PrintSize();
    return bench::ExitStatus();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "load_bench: %s\n", error.what());
    return 1;
  }
}
