// From what is wanted to the steps that bring it about. Either everything is reached, or the first step is
// not taken: a plan with obstacles has no steps.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kdport/model/host.h"
#include "kdport/model/texts.h"
#include "kdport/plan/step.h"
#include "kdport/plan/wish.h"

namespace KdPort {

// What becomes of one port, for the reader: "name", COM7, COM9.
struct Change {
  std::size_t port = 0;
  std::string what;
  std::string before;  // empty when unknown
  std::string after;
};

struct Obstacle {
  std::size_t port = 0;
  Message message;
};

struct Plan {
  std::vector<Change> changes;
  std::vector<Obstacle> obstacles;
  std::vector<Step> steps;
};

// What a wish asks for and the host has already is no change, and no obstacle stands in its way. There may be
// one wish for a port. `force`: ports that a program has open are changed too.
[[nodiscard]] Plan MakePlan(const Host& host, const std::vector<Wish>& wishes, bool force);

}  // namespace KdPort
