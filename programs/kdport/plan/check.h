// Whether all places agree about the ports' COM names, and what would mend it.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "kdport/model/host.h"
#include "kdport/model/texts.h"
#include "kdport/plan/step.h"

namespace KdPort {

struct Finding {
  Message message;
  std::optional<std::size_t> port;  // nothing for a number that nobody has
  std::optional<Step> mend;         // nothing where only a person can decide
};

// What is wrong with these ports, and with the numbers of the host when `ghosts` is set. Ports that are not
// present have no DOS device to agree with and are left out.
[[nodiscard]] std::vector<Finding> CheckHost(const Host& host, std::span<const std::size_t> ports,
                                             bool ghosts);

// The steps that mend what was found, "PortName" being right. Another maker's device is never touched: nor is
// its DOS device, nor a number that it has while it is not present.
[[nodiscard]] std::vector<Step> RepairSteps(std::span<const Finding> findings, bool releaseGhosts);

}  // namespace KdPort
