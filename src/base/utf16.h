// UTF-16 code units and wchar_t text: the same thing on Windows, a conversion elsewhere. Portable.
//
// The drivers' streams hold UTF-16 code units. Where wchar_t has 32 bits, a pair of surrogates becomes one
// character and back. Neither function rejects any text; both throw std::bad_alloc when memory runs out.
#pragma once

#include <string>
#include <string_view>

// Wide text as UTF-16 code units. Lone surrogates pass through unchanged.
[[nodiscard]] std::u16string ToUtf16(std::wstring_view text);

// UTF-16 code units as wide text. Lone surrogates pass through unchanged.
[[nodiscard]] std::wstring FromUtf16(std::u16string_view text);
