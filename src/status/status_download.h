// Fetching a port's status document from its device server. Windows only.
#pragma once

#include <cstdint>

#include "base/wide_string.h"

// Gets http://host:webPort<path>, whatever HTTP status the answer has, as text folded to lower case. Blocks
// for the length of the exchange. Throws KdINet::CInternetException when a step of it fails.
[[nodiscard]] CWideString DownloadStatusDocument(const CWideString& host, std::uint16_t webPort,
                                                 const CWideString& path);
