#include "kdport/model/com_name.h"

#include <algorithm>
#include <array>

#include "base/decimal.h"
#include "install/naming/com_names.h"

namespace KdPort {

namespace {

char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::string ComName(std::int32_t number) {
  const CWideString name = ComNameOf(number);
  return name.ToNarrow(name.Length()).value_or(std::string());
}

std::int32_t ComNumber(std::string_view name) {
  constexpr std::string_view kPrefix = "COM";
  std::array<wchar_t, 6> wide{};
  if (name.size() <= kPrefix.size() || name.size() > wide.size()) return 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = Upper(name[i]);
    const char lowestDigit = i == kPrefix.size() ? '1' : '0';
    const bool fits = i < kPrefix.size() ? c == kPrefix[i] : c >= lowestDigit && c <= '9';
    if (!fits) return 0;
    wide[i] = static_cast<wchar_t>(c);
  }
  const std::int32_t number = ComNumberOf({wide.data(), name.size()});
  return number <= kHighestNumber ? number : 0;
}

std::string Folded(std::string_view text) {
  std::string folded(text);
  std::ranges::transform(folded, folded.begin(), Upper);
  return folded;
}

}  // namespace KdPort
