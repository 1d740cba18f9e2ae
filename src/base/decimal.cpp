#include "base/decimal.h"

#include <limits>

std::int32_t ParseDecimal(std::wstring_view text) noexcept {
  std::size_t at = 0;
  const auto peek = [&] { return at < text.size() ? text[at] : L'\0'; };
  while (peek() == L' ' || (peek() >= L'\t' && peek() <= L'\r')) ++at;
  const bool negative = peek() == L'-';
  if (negative || peek() == L'+') ++at;

  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  std::int64_t value = 0;
  for (; peek() >= L'0' && peek() <= L'9'; ++at) {
    // Digits past the limit are dropped, so that any number of them stays far from overflow.
    if (value <= kMost) value = value * 10 + (peek() - L'0');
  }
  if (negative) {
    return value > kMost ? std::numeric_limits<std::int32_t>::min() : static_cast<std::int32_t>(-value);
  }
  return value > kMost ? std::numeric_limits<std::int32_t>::max() : static_cast<std::int32_t>(value);
}

std::int32_t ComNumberOf(std::wstring_view comName) noexcept {
  return comName.size() > 3 ? ParseDecimal(comName.substr(3)) : 0;
}
