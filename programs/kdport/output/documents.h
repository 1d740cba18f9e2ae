// What the commands print for a program: one JSON document each, as the files in schema/ describe them.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "kdport/model/exit_code.h"
#include "kdport/model/host.h"
#include "kdport/model/live.h"
#include "kdport/plan/check.h"
#include "kdport/plan/planner.h"
#include "kdport/run/runner.h"

namespace KdPort {

// list.json: of `list`, and of `export`. `live` has a status for each port, or none for any.
[[nodiscard]] std::string ListDocument(const Host& host, std::span<const std::size_t> ports,
                                       std::span<const LiveStatus> live = {});
// check.json
[[nodiscard]] std::string CheckDocument(const Host& host, std::span<const Finding> findings);
// change.json: of `rename`, `set`, `network`, `apply` and `repair`. Without a report nothing was begun: the
// plan was only asked for, or has obstacles.
[[nodiscard]] std::string ChangeDocument(const Host& host, const Plan& plan, const RunReport* report);
// update.json: of `update-driver`.
[[nodiscard]] std::string UpdateDocument(const std::string& hardwareId, const std::string& inf, bool updated,
                                         bool restartNeeded);
// error.json: of every command that did not come to its work.
[[nodiscard]] std::string ErrorDocument(ExitCode exit, std::span<const Message> faults);

}  // namespace KdPort
