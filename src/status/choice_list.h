// Lists of choices for the pages' combo boxes. Portable.
//
// A list of choices is one string of the string table.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/wide_string.h"

// One entry: what the user reads, and the value that is kept with the combo box's item.
struct ChoiceItem {
  CWideString text;
  std::int32_t value = 0;

  friend bool operator==(const ChoiceItem&, const ChoiceItem&) = default;
};
using ChoiceList = std::vector<ChoiceItem>;

// Splits the comma-separated text of a string resource into up to five choices, in their order. A choice's
// value is its place in the text, from 1, whatever is left out; bit value-1 of `mask` says whether it is
// offered. The fifth takes the rest of the text, commas included. Nothing is trimmed or quoted.
// Kept on purpose: missing comma
[[nodiscard]] ChoiceList SplitChoices(const CWideString& text, std::uint32_t mask);

// The position, from 0, of the entry for `value`, or nothing: the last whose value equals it or, with
// `matchBits`, has all its bits.
[[nodiscard]] std::optional<std::size_t> FindChoice(const ChoiceList& list, std::int32_t value,
                                                    bool matchBits) noexcept;
