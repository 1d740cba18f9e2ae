#include "kdport/plan/rename_order.h"

#include <optional>

namespace KdPort {

namespace {

// Sorting looks for free numbers from 3 on and leaves the first two, which people expect to be built-in
// ports, alone; here they come last.
std::optional<std::int32_t> FreeNumber(const HeldNumbers& held) {
  constexpr std::int32_t kFirst = 3;
  for (std::int32_t i = 0; i < kHighestNumber; ++i) {
    const std::int32_t number = (kFirst - 1 + i) % kHighestNumber + 1;
    if (held[static_cast<std::size_t>(number)] == 0) return number;
  }
  return std::nullopt;
}

class COrdering {
 public:
  COrdering(const std::vector<Move>& wanted, const HeldNumbers& held) : held_(held), waiting_(wanted) {
    for (std::size_t i = 0; i < waiting_.size(); ++i) wanting_[At(waiting_[i].to)] = i;
    done_.resize(waiting_.size());
  }

  RenameOrder Order() {
    for (std::size_t i = 0; i < waiting_.size(); ++i) FollowFrom(i);
    for (std::size_t i = 0; i < waiting_.size(); ++i) {
      if (!done_[i]) OpenCircle(i);
    }
    return std::move(order_);
  }

 private:
  static std::size_t At(std::int32_t number) { return static_cast<std::size_t>(number); }

  // Moves what can be moved: this port, then the one that waits for its number, and so on.
  void FollowFrom(std::size_t i) {
    while (!done_[i] && held_[At(waiting_[i].to)] == 0) {
      const std::int32_t freed = waiting_[i].from;
      Take(waiting_[i]);
      done_[i] = true;
      const auto next = wanting_[At(freed)];
      if (!next) return;
      i = *next;
    }
  }

  // What still waits stands in a circle, or behind a number that stays held. One port of a circle stands
  // aside.
  void OpenCircle(std::size_t i) {
    const auto aside = LeadsBack(i) ? FreeNumber(held_) : std::nullopt;
    if (!aside) {
      order_.blocked.push_back(waiting_[i]);
      return;
    }
    const std::int32_t left = waiting_[i].from;
    Take({waiting_[i].port, left, *aside});
    waiting_[i].from = *aside;
    FollowFrom(wanting_[At(left)].value());
  }

  // Whether the chain of those who wait for `first` and for each other ends at `first` again.
  bool LeadsBack(std::size_t first) const {
    std::size_t at = first;
    for (std::size_t steps = 0; steps < waiting_.size(); ++steps) {
      const auto next = wanting_[At(waiting_[at].from)];
      if (!next || held_[At(waiting_[at].from)] != 1) return false;
      at = *next;
      if (at == first) return true;
    }
    return false;
  }

  void Take(const Move& move) {
    --held_[At(move.from)];
    ++held_[At(move.to)];
    order_.moves.push_back(move);
  }

  HeldNumbers held_;
  std::vector<Move> waiting_;
  std::vector<bool> done_;
  std::array<std::optional<std::size_t>, kHighestNumber + 1> wanting_;  // which move wants a number
  RenameOrder order_;
};

}  // namespace

RenameOrder OrderRenames(const std::vector<Move>& wanted, HeldNumbers held) {
  return COrdering(wanted, held).Order();
}

}  // namespace KdPort
