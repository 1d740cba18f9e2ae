// Texts: names as Windows compares and writes them, and their encodings.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace workbench {

// As Windows compares names of devices and paths.
[[nodiscard]] bool EqualNoCase(std::wstring_view left, std::wstring_view right);
// "{4d36e978-e325-11ce-bfc1-08002be10318}", in small letters as interface paths have it.
[[nodiscard]] std::wstring GuidText(const GUID& guid);
// The decimal number behind the first three characters of a COM name, 0 when there is none.
[[nodiscard]] DWORD ComNumberOf(std::wstring_view name);
// UTF-16 to UTF-8, and back.
[[nodiscard]] std::string Narrow(std::wstring_view text);
[[nodiscard]] std::wstring Widen(std::string_view text);
// The folder of a module's file (null: the program's), with a backslash at its end.
[[nodiscard]] std::wstring FolderOf(HMODULE module);

}  // namespace workbench
