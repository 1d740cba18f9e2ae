// Reading the whole host.
#pragma once

#include <map>
#include <string>

#include "base/wide_string.h"
#include "kdport/run/host_access.h"

namespace KdPort {

// Reads the host, and the paths of its ports' configuration interfaces by the ports' instance ids.
[[nodiscard]] Outcome ReadWindowsHost(Host& host, std::map<std::string, CWideString>& interfaces);

}  // namespace KdPort
