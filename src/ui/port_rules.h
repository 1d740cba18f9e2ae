// What the port page decides when the user presses OK or returns from the advanced settings. Portable.
#pragma once

#include <cstdint>

#include "config/vcp_parameters.h"
#include "status/port_boxes.h"

// The user's wishes in the two boxes of the port page.
struct HandshakeBoxes {
  bool ctsAlwaysTrue = false;
  bool dsrAlwaysTrue = false;
};

// Takes the boxes over into the port's settings. True when something is to be written: a setting has changed,
// or `settingsChanged` was set. A line that the port does not have is not emulated; RS-422/485 ports have no
// DSR, and in RS-485 mode no CTS either: their boxes do not count.
[[nodiscard]] bool ApplyHandshake(CVcpParameters& port, std::uint32_t portIndex, HandshakeBoxes boxes,
                                  bool settingsChanged) noexcept;

// How the boxes change when the advanced settings have been saved.
[[nodiscard]] HandshakeChange HandshakeAfterAdvanced(const CVcpParameters& port,
                                                     std::uint32_t portIndex) noexcept;
