// Between Windows' text and kdport's UTF-8.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "base/wide_string.h"

namespace KdPort {

[[nodiscard]] std::string Utf8(std::wstring_view text);
[[nodiscard]] inline std::string Utf8(const CWideString& text) {
  return Utf8(text.View());
}
// What is not UTF-8 becomes replacement characters.
[[nodiscard]] std::wstring Wide(std::string_view text);

// Windows' words for an error code, with the code: "Access is denied (error 5)".
[[nodiscard]] std::string ErrorWords(DWORD error);

}  // namespace KdPort
