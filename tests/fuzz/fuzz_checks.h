// What the fuzz targets share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <limits>
#include <span>
#include <string>

#include "base/utf16.h"

// Ends the run as a finding when something does not hold that must, whatever the input says.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

// Text as the registry and the device tree have it: little-endian UTF-16 code units. An odd last byte is left
// out.
inline std::wstring Utf16Text(std::span<const std::uint8_t> bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    units[i] = static_cast<char16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
  }
  return FromUtf16(units);
}

// The C library's reading of a number, held within 32 bits.
inline std::int32_t ReferenceNumber(const std::wstring& text) {
  using Limits = std::numeric_limits<std::int32_t>;
  static_assert(sizeof(long) > sizeof(std::int32_t));
  const long value = std::wcstol(text.c_str(), nullptr, 10);
  if (value > Limits::max()) return Limits::max();
  return value < Limits::min() ? Limits::min() : static_cast<std::int32_t>(value);
}
