// What the commands print for a reader.
#pragma once

#include <span>
#include <string>

#include "kdport/model/host.h"
#include "kdport/model/live.h"
#include "kdport/plan/check.h"
#include "kdport/plan/planner.h"
#include "kdport/run/runner.h"

namespace KdPort {

[[nodiscard]] std::string ListText(const Host& host, std::span<const std::size_t> ports);
// `live` has a status for each port.
[[nodiscard]] std::string LiveText(const Host& host, std::span<const std::size_t> ports,
                                   std::span<const LiveStatus> live);
[[nodiscard]] std::string FindingsText(std::span<const Finding> findings);
// Each change as old -> new, each obstacle with what to do about it, and the steps in their order.
[[nodiscard]] std::string PlanText(const Host& host, const Plan& plan);
// What was done and what was not, and why not.
[[nodiscard]] std::string RunText(const Host& host, const RunReport& report);
// One message with its advice, on a line.
[[nodiscard]] std::string MessageText(const Message& message);

}  // namespace KdPort
