#include "base/utf16.h"

#include <cstdint>

std::u16string ToUtf16(std::wstring_view text) {
  std::u16string result;
  result.reserve(text.size());
  for (const wchar_t c : text) {
    const auto point = static_cast<std::uint32_t>(c);
    if (point < 0x10000) {
      result.push_back(static_cast<char16_t>(point));
    } else {
      result.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10 & 0x3FF)));
      result.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
    }
  }
  return result;
}

std::wstring FromUtf16(std::u16string_view text) {
  if constexpr (sizeof(wchar_t) == sizeof(char16_t)) {
    return {text.begin(), text.end()};
  } else {
    std::wstring result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
      std::uint32_t point = text[i];
      const bool isPair =
          (point & 0xFC00) == 0xD800 && i + 1 < text.size() && (text[i + 1] & 0xFC00) == 0xDC00;
      if (isPair) point = 0x10000 + ((point & 0x3FF) << 10) + (text[++i] & 0x3FFU);
      result.push_back(static_cast<wchar_t>(point));
    }
    return result;
  }
}
