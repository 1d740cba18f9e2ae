// The kinds of port: RS-232, or RS-422/485 with its duplex modes. Portable.
#pragma once

#include <cstdint>

// Duplex modes of an RS-422/485 port, as the drivers store them. In RS-485 mode the port shares one pair of
// wires, and CTS means nothing.
inline constexpr std::uint32_t kDuplexRs422 = 1;
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
