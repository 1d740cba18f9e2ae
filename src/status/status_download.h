// Fetching a port's status document from its device server. Windows only.
#pragma once

#include <cstdint>
#include <optional>

#include "base/wide_string.h"
#include "status/port_web.h"

// Gets http://host:webPort<path>, whatever HTTP status the answer has, as text folded to lower case. Blocks
// for the length of the exchange. Throws KdINet::CInternetException when a step of it fails.
[[nodiscard]] CWideString DownloadStatusDocument(const CWideString& host, std::uint16_t webPort,
                                                 const CWideString& path);

// The port's status document; nothing when a step of the exchange fails, as with a device server that is out of
// reach.
[[nodiscard]] std::optional<CWideString> FetchStatusDocument(const PortWebAddress& web);
