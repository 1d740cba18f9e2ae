// The kinds of port: RS-232, or RS-422/485 with its duplex modes. Portable.
//
// `PortType` of both parameter classes is read as a mask by the pages and as 0 (RS-232) or 1 (RS-422/485) by
// the update exports. Kept on purpose: type and mask
#pragma once

#include <cstdint>

// Duplex modes of an RS-422/485 port, as the drivers store them; 0 is no mode of such a port. In RS-485 mode
// the port shares one pair of wires, and CTS means nothing.
inline constexpr std::uint32_t kDuplexRs422 = 1;
inline constexpr std::uint32_t kDuplexRs485 = 2;

// The position, 0 to 31, of a port's bit in a `PortType` that is a mask with one bit for each port of the
// device server. `portIndex` is the set's SerialPortIndex: ports are counted from 1, and the 33rd shares the
// bit of the first. Kept on purpose: index 0
[[nodiscard]] constexpr std::uint32_t PortBit(std::uint32_t portIndex) noexcept {
  return (portIndex - 1) % 32;
}

// Whether a port is an RS-422/485 port, by such a mask.
[[nodiscard]] constexpr bool IsRs422485Port(std::uint32_t portTypeMask, std::uint32_t portIndex) noexcept {
  return (portTypeMask >> PortBit(portIndex) & 1) != 0;
}
