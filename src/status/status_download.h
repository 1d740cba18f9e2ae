// Fetching a port's status document from its device server. Windows only.
//
// Both block the calling thread for the length of the exchange, which only WinINet's own time-outs bound. Any
// thread. std::bad_alloc passes through both.
#pragma once

#include <cstdint>
#include <optional>

#include "base/wide_string.h"
#include "status/port_web.h"

// Gets http://host:webPort<path>, whatever HTTP status the answer has, as text folded to lower case. Its
// bytes are read in the host's ANSI code page. Throws KdINet::CInternetException when a step of it fails.
[[nodiscard]] CWideString DownloadStatusDocument(const CWideString& host, std::uint16_t webPort,
                                                 const CWideString& path);

// The port's status document (StatusDocumentPath); nothing when a step of the exchange fails, for example
// because the device server is out of reach.
[[nodiscard]] std::optional<CWideString> FetchStatusDocument(const PortWebAddress& web);
