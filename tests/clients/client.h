// What the tests with outside clients share.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

// Skips the calling test, loudly, unless it runs in a Wine prefix that is thrown away afterwards: on a real
// Windows it would install into the computer.
#define SKIP_OUTSIDE_THROW_AWAY_PREFIX() \
  if (!InThrowAwayPrefix()) GTEST_SKIP() << "changes the system: runs in a throw-away Wine prefix only"

[[nodiscard]] bool InThrowAwayPrefix();

// The folder of the running program, where the DLL and the example INF files are.
[[nodiscard]] std::filesystem::path ProgramFolder();
[[nodiscard]] std::filesystem::path SystemFolder();

// The text of a value, the first one of a list; "(none)" when there is none.
[[nodiscard]] std::wstring RegistryText(HKEY key, const std::wstring& path, const wchar_t* name);
[[nodiscard]] std::vector<std::wstring> RegistryKeys(HKEY key, const std::wstring& path);

// Lines of what Wine's installer said so far that contain `what`.
[[nodiscard]] std::vector<std::string> SetupTrace(const std::string& what);
