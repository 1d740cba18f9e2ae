#include "ui/framework/link_text.h"

#include <algorithm>

namespace {

constexpr std::wstring_view kOpen = L"<A>";
constexpr std::wstring_view kClose = L"</A>";
constexpr unsigned kColourParts = 3;

constexpr wchar_t ToUpper(wchar_t letter) noexcept {
  return letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - L'a' + L'A') : letter;
}

std::size_t FindTag(std::wstring_view text, std::wstring_view tag, std::size_t from) noexcept {
  const auto found = std::search(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), tag.begin(),
                                 tag.end(), [](wchar_t a, wchar_t b) { return ToUpper(a) == b; });
  return found == text.end() ? std::wstring_view::npos : static_cast<std::size_t>(found - text.begin());
}

std::wstring_view Trim(std::wstring_view text) noexcept {
  const std::size_t first = text.find_first_not_of(L" \t");
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

std::optional<std::uint32_t> ParseByte(std::wstring_view text) noexcept {
  if (text.empty() || text.size() > 3) return std::nullopt;
  std::uint32_t value = 0;
  for (const wchar_t digit : text) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    value = value * 10 + static_cast<std::uint32_t>(digit - L'0');
  }
  if (value > 255) return std::nullopt;
  return value;
}

}  // namespace

LinkText SplitLinkText(std::wstring_view text, bool tags) noexcept {
  const LinkText whole{.before = {}, .link = text, .after = {}};
  if (!tags) return whole;
  const std::size_t open = FindTag(text, kOpen, 0);
  if (open == std::wstring_view::npos) return whole;
  const std::size_t start = open + kOpen.size();
  const std::size_t close = FindTag(text, kClose, start);
  if (close == std::wstring_view::npos) return whole;
  return {.before = text.substr(0, open),
          .link = text.substr(start, close - start),
          .after = text.substr(close + kClose.size())};
}

std::optional<std::uint32_t> ParseLinkColour(std::wstring_view text) noexcept {
  std::uint32_t colour = 0;
  for (unsigned part = 0; part < kColourParts; ++part) {
    const std::size_t comma = text.find(L',');
    const bool last = part + 1 == kColourParts;
    if (last != (comma == std::wstring_view::npos)) return std::nullopt;
    const std::optional<std::uint32_t> value = ParseByte(Trim(text.substr(0, comma)));
    if (!value) return std::nullopt;
    colour |= *value << (8 * part);
    if (!last) text.remove_prefix(comma + 1);
  }
  return colour;
}
