// What the port page decides when the user presses OK or returns from the advanced settings. Portable.
#pragma once

#include <cstdint>

#include "config/vcp_parameters.h"
#include "status/port_boxes.h"

// The two boxes of the port page, as the user has set them.
struct HandshakeBoxes {
  bool ctsAlwaysTrue = false;
  bool dsrAlwaysTrue = false;
};

// Stores the boxes in the port's settings, in memory only. True when something is to be written: a setting
// has changed, or `settingsChanged` was set. The box of a line that the port does not have does not count:
// RS-422/485 ports have no DSR, and in RS-485 mode no CTS either. `portIndex` is the port's SerialPortIndex.
[[nodiscard]] bool ApplyHandshake(CVcpParameters& port, std::uint32_t portIndex, HandshakeBoxes boxes,
                                  bool settingsChanged) noexcept;

// How the boxes change when the advanced settings have been saved. Kept on purpose: enabled DSR label
[[nodiscard]] HandshakeChange HandshakeAfterAdvanced(const CVcpParameters& port,
                                                     std::uint32_t portIndex) noexcept;
