// What a device server's status document says about a port. Portable.
//
// A document is a flat text with one pair of tags for each value: <baud>9600</baud>. It comes from the
// network and is not trusted: any text is accepted, and nothing in it can fail but memory (std::bad_alloc).
#pragma once

#include <optional>
#include <string_view>

#include "base/wide_string.h"
#include "config/nbus_parameters.h"
#include "config/vcp_parameters.h"
#include "status/port_boxes.h"

// The value between a tag pair, from the first opening tag to the first closing tag of the whole text, with
// nothing trimmed and nothing unescaped. Nothing when one of the two is missing or the closing tag is the
// first.
[[nodiscard]] std::optional<CWideString> ExtractTagValue(const CWideString& text, std::wstring_view openTag,
                                                         std::wstring_view closeTag);

// What the port page shows of a port. The texts are words for the user, or the document's own text.
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

// Reads a status document, which has been folded to lower case, and stores its values in both parameter sets,
// in memory only. A value that is missing is shown as the sets have it. An empty document stands for a device
// server that cannot be reached: the state is "Offline". Data, stop and parity values out of range are not
// stored; the texts may be as long as the document.
// Kept on purpose: parity into data bits, text for a number, whole mask
[[nodiscard]] PortStatus ApplyStatusDocument(const CWideString& document, CVcpParameters& port,
                                             CKdNBusUserModeInterface& bus);
