// The order of renames in which no number is ever held twice.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kdport/model/com_name.h"

namespace KdPort {

struct Move {
  std::size_t port = 0;
  std::int32_t from = 0;
  std::int32_t to = 0;
};

// How many hold each number; number 0 is nobody's. A claim of the COM name database counts as a holder when
// nobody else has the number.
using HeldNumbers = std::array<std::size_t, kHighestNumber + 1>;

struct RenameOrder {
  std::vector<Move> moves;  // some ports twice: first to a number that is free meanwhile
  std::vector<Move>
      blocked;  // cannot be reached: a circle without a free number, or a number that stays held
};

// Orders moves of different ports to different numbers.
[[nodiscard]] RenameOrder OrderRenames(const std::vector<Move>& wanted, HeldNumbers held);

}  // namespace KdPort
