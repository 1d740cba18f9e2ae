// A device server's ports, whose names change as sorting asks for it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "base/decimal.h"
#include "install/naming/com_names.h"
#include "install/naming/sort_plan.h"

using Names = std::vector<CWideString>;

// The numbers of these names, and every number above `takenFrom`.
inline ComUsage UsageOf(const Names& names, std::uint8_t takenFrom) {
  ComUsage usage{};
  std::fill(usage.begin() + takenFrom, usage.end(), std::uint8_t{1});
  for (const CWideString& name : names) {
    const auto number = static_cast<std::uint32_t>(ComNumberOf(name.View()));
    if (number >= 1 && number <= usage.size()) usage[number - 1] = 1;
  }
  return usage;
}

class SortedPorts : public CSortSteps {
 public:
  explicit SortedPorts(Names present) : names(std::move(present)) {}

  std::optional<std::int32_t> FreeNumber() override {
    const auto number = FirstFreeNumber(UsageOf(names, takenFrom), 3, 255);
    foundNone = foundNone || !number;
    return number ? std::optional(static_cast<std::int32_t>(*number)) : std::nullopt;
  }
  bool Rename(std::size_t child, const CWideString& newName) override {
    ++renames;
    if (renames == failing) return false;
    if (renames != declined) names.at(child) = newName;
    return true;
  }
  void ReadName(std::size_t child, CWideString& name) override { name = names.at(child); }

  Names names;
  std::uint8_t takenFrom = 255;
  std::size_t failing = 0;   // which rename, from 1; 0 for none
  std::size_t declined = 0;  // which rename, from 1; 0 for none
  std::size_t renames = 0;
  bool foundNone = false;
};
