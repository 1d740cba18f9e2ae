// What the settings of a port mean for its pages: decisions without a window. Portable.
#pragma once

#include <cstdint>
#include <optional>

#include "config/vcp_parameters.h"

// The duplex mode in which an RS-485 port shares one pair of wires: CTS means nothing then.
inline constexpr std::uint32_t kDuplexRs485 = 2;

// Whether a port is an RS-422/485 port, by a `PortType` that is a mask with one bit for each port of the
// device server. Ports are counted from 1; the bit is taken modulo 32, so that index 0, which no port has,
// looks at bit 31.
[[nodiscard]] constexpr bool IsRs422485Port(std::uint32_t portTypeMask, std::uint32_t portIndex) noexcept {
  return (portTypeMask >> ((portIndex - 1) % 32) & 1) != 0;
}

// The user's wishes in the two boxes of the port page.
struct HandshakeBoxes {
  bool ctsAlwaysTrue = false;
  bool dsrAlwaysTrue = false;
};

// Takes the boxes over into the port's settings. True when something is to be written: a setting has changed,
// or `settingsChanged` was set. A line that the port does not have is not emulated; RS-422/485 ports have no
// DSR, and in RS-485 mode no CTS either, so that their boxes show a fact and not a wish.
[[nodiscard]] bool AdoptHandshake(CVcpParameters& port, std::uint32_t portIndex, HandshakeBoxes boxes,
                                  bool settingsChanged) noexcept;

// What happens to a check box and its label; what is empty stays as it is.
struct BoxChange {
  std::optional<bool> checked{};
  std::optional<bool> boxEnabled{};
  std::optional<bool> labelEnabled{};
};
struct HandshakeChange {
  BoxChange cts;
  BoxChange dsr;
};

// How the boxes change when the advanced settings have been saved.
[[nodiscard]] HandshakeChange HandshakeAfterAdvanced(const CVcpParameters& port,
                                                     std::uint32_t portIndex) noexcept;
