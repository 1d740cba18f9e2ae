// What a device server's status document says about a port. Portable.
#pragma once

#include <optional>
#include <string_view>

#include "base/wide_string.h"
#include "config/nbus_parameters.h"
#include "config/vcp_parameters.h"
#include "status/port_boxes.h"

// The value between a tag pair, or nothing when the pair is not there: no opening tag, or no closing tag, or
// the first closing tag of the whole text stands before the first opening one. The value is taken as it is,
// with nothing trimmed and nothing unescaped, up to the closing tag.
[[nodiscard]] std::optional<CWideString> ExtractTagValue(const CWideString& text, std::wstring_view openTag,
                                                         std::wstring_view closeTag);

// What the port page shows of a port.
struct PortStatus {
  CWideString baudRate;
  CWideString dataBits;
  CWideString parity;
  CWideString stopBits;
  CWideString flowControl;
  CWideString duplex;
  CWideString state;
  CWideString mode;
  bool showDuplex = false;         // the duplex row is for RS-422/485 ports
  bool showOverrideMarks = false;  // a line that is there is overridden
  HandshakeChange boxes;
};

// Reads a status document, which has been folded to lower case, and adopts what it says into both parameter
// sets. What it does not say is shown as the sets have it, and an empty document is that of a device server
// that cannot be reached. Numbers are checked before they are stored; the texts may be as long as the
// document.
[[nodiscard]] PortStatus ApplyStatusDocument(const CWideString& document, CVcpParameters& port,
                                             CKdNBusUserModeInterface& bus);
