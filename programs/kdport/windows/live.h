// Asking device servers for what their ports do at this moment.
#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "base/wide_string.h"
#include "status/port_web.h"

namespace KdPort {

using Documents = std::vector<std::optional<CWideString>>;

// The status documents of these ports: up to 16 device servers at once, the ports of one after each other. A
// server that leaves one request without an answer in time is not asked on, and has no document for any port.
[[nodiscard]] Documents FetchDocuments(const std::vector<PortWebAddress>& ports,
                                       std::chrono::milliseconds timeout);

}  // namespace KdPort
