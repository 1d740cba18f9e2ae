// Decimal numbers at the front of a text, as the C runtime of Windows reads them. Portable.
//
// Both functions take any text, never fail and may be called on any thread. The locale has no influence.
#pragma once

#include <cstdint>
#include <string_view>

// The number at the front of `text`: leading white space, an optional sign, then digits up to the first
// other character; 0 without digits. Values outside 32 bits saturate, as wcstol does where long has 32 bits.
[[nodiscard]] std::int32_t ParseDecimal(std::wstring_view text) noexcept;

// The number of a COM name: the decimal value after its first three characters, which are not compared with
// "COM". A name of three characters or fewer has the number 0.
[[nodiscard]] std::int32_t ComNumberOf(std::wstring_view comName) noexcept;
