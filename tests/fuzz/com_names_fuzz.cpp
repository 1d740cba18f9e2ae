// Hostile COM names, as a registry may hold them: their numbers, the search for free ones, and a device server's
// ports being put in order.
//
// Input: a number (four bytes), where the search for a free one begins and from where on none is free (one byte
// each), which rename is declined and which fails (one byte each, 0 for none), then the names in UTF-16, a line
// feed between them.
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "../sorted_ports.h"
#include "fuzz_checks.h"

namespace {

constexpr std::size_t kMostPorts = 32;

Names LinesOf(const std::wstring& text) {
  Names names;
  for (std::size_t from = 0; from <= text.size() && names.size() < kMostPorts;) {
    const std::size_t end = std::min(text.find(L'\n', from), text.size());
    names.emplace_back(text.substr(from, end - from));
    from = end + 1;
  }
  return names;
}

void CheckNumbers(const std::wstring& text, std::int32_t number) {
  Require(ParseDecimal(text) == ReferenceNumber(text), "a number is read as the C library reads it");
  const std::int32_t named = text.size() > 3 ? ReferenceNumber(text.substr(3)) : 0;
  Require(ComNumberOf(text) == named, "a name's number stands behind its first three characters");
  Require(ComNumberOf(ComNameOf(number).View()) == number, "a number survives in its name");
}

void CheckSearch(const Names& names, std::uint32_t first, std::uint8_t takenFrom) {
  const ComUsage usage = UsageOf(names, takenFrom);
  const auto free = FirstFreeNumber(usage, first, 255);
  Require(!free || (*free >= first && *free <= 255 && IsNumberFree(usage, *free)), "what is found is free");
  const std::uint32_t moved = NumberForMovedHolder(&usage, first, names.front());
  Require((moved <= 254 && IsNumberFree(usage, moved)) || moved == 2 * (names.front().Length() + 1),
          "a moved holder goes to a free number, or to the size of its name");
}

// Whether every name is what its number is called, and no number comes twice.
bool AreOrdinary(const Names& names) {
  std::vector<std::int32_t> numbers;
  for (const CWideString& name : names) {
    numbers.push_back(ComNumberOf(name.View()));
    if (!(ComNameOf(numbers.back()) == name)) return false;
  }
  std::ranges::sort(numbers);
  return std::ranges::adjacent_find(numbers) == numbers.end();
}

void CheckSorting(const Names& names, const std::uint8_t* choices) {
  SortedPorts ports(names);
  ports.takenFrom = choices[0];
  ports.declined = choices[1];
  ports.failing = choices[2];
  const bool succeeded = SortNames(names, ports);
  Require(ports.renames <= 3 * names.size(), "a port is renamed a few times at most");
  Require(succeeded == (ports.failing == 0 || ports.renames < ports.failing),
          "a rename that fails ends the sorting");
  if (ports.failing != 0 || ports.declined != 0 || ports.foundNone || !AreOrdinary(names)) return;
  Require(!NeedsSorting(ports.names), "ordinary names are in order afterwards");
  Require(std::ranges::is_permutation(ports.names, names), "no name is lost, none is new");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kChoices = 8;
  if (size < kChoices) return 0;
  std::array<std::uint8_t, 4> numberBytes;
  std::copy_n(data, numberBytes.size(), numberBytes.begin());
  const std::wstring text = Utf16Text(std::span(data, size).subspan(kChoices));
  CheckNumbers(text, std::bit_cast<std::int32_t>(numberBytes));
  const Names names = LinesOf(text);
  CheckSearch(names, data[4], data[5]);
  CheckSorting(names, data + 5);
  return 0;
}
