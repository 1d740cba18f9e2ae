// What a hyperlink control reads from texts: its link part and its colours. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// A text around a link: "See <A>our pages</A>." has the three parts "See ", "our pages" and ".".
struct LinkText {
  std::wstring_view before;
  std::wstring_view link;
  std::wstring_view after;
};

// The parts of a text, as views into it: they are valid for as long as the text is. Tags are looked for only
// when `tags` is set, and compared without regard to case; a text without a pair of them is all link.
[[nodiscard]] LinkText SplitLinkText(std::wstring_view text, bool tags) noexcept;

// A colour (0x00BBGGRR) from "red,green,blue" in decimal, each from 0 to 255, with blanks allowed around the
// numbers; nothing for any other text.
[[nodiscard]] std::optional<std::uint32_t> ParseLinkColour(std::wstring_view text) noexcept;
