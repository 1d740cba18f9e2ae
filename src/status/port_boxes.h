// What the check boxes for the handshake lines show. Portable.
#pragma once

#include <cstdint>
#include <optional>

#include "config/vcp_parameters.h"

// The duplex mode in which an RS-485 port shares one pair of wires: CTS means nothing then.
inline constexpr std::uint32_t kDuplexRs485 = 2;

// The bit of a port in a `PortType` that is a mask with one bit for each port of the device server. Ports are
// counted from 1; the bit is taken modulo 32. Kept on purpose: index 0
[[nodiscard]] constexpr std::uint32_t PortBit(std::uint32_t portIndex) noexcept {
  return (portIndex - 1) % 32;
}

// Whether a port is an RS-422/485 port, by such a mask.
[[nodiscard]] constexpr bool IsRs422485Port(std::uint32_t portTypeMask, std::uint32_t portIndex) noexcept {
  return (portTypeMask >> PortBit(portIndex) & 1) != 0;
}

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

inline constexpr BoxChange kCheckedAndDisabled{.checked = true, .boxEnabled = false, .labelEnabled = false};

// What the boxes show after a refresh. An RS-422/485 port has no DSR and, in RS-485 mode, no CTS, and a port
// without one of the lines has it always true: their boxes then show a fact that the user cannot change.
[[nodiscard]] HandshakeChange HandshakeAfterRefresh(const CVcpParameters& port,
                                                    std::uint32_t portIndex) noexcept;
