// Which parameters a management program's settings change. Portable.
//
// The values come from other programs unchecked; what each function does with a value out of range is said
// below. The functions change the sets in memory only. Writing them is the caller's step (settings_update.h).
#pragma once

#include <cstdint>

#include "config/nbus_parameters.h"
#include "config/vcp_parameters.h"

// Stores a value from 0 to `most`; a larger one leaves the setting as it is.
constexpr void StoreUpTo(std::uint32_t& setting, std::uint32_t value, std::uint32_t most) noexcept {
  if (value <= most) setting = value;
}

// Where and how a port reaches its device server, and what kind of port it is.
struct NetworkInfo {
  std::uint32_t address = 0;   // IPv4, most significant byte first: 192.168.0.10 is 0xC0A8000A
  std::uint32_t dataPort = 0;  // TCP ports of the device server
  std::uint32_t configPort = 0;
  std::uint32_t webPort = 0;
  std::uint32_t mac1 = 0;  // hardware address, three bytes in each half
  std::uint32_t mac2 = 0;
  std::uint32_t duplexMode = 0;  // 0 none, kDuplexRs422, kDuplexRs485
  std::uint32_t portType = 0;    // 0 RS-232, 1 RS-422/485; see below for others
};

// The line settings of a port, in the driver's codes (see CVcpParameters).
struct LineSettings {
  std::uint32_t baudRate = 0;  // bits per second
  std::uint32_t dataBits = 0;
  std::uint32_t parity = 0;
  std::uint32_t stopBits = 0;
  std::uint32_t flowControl = 0;
};

// Stores everything, unchecked. The bus takes any port type over. The port does so only when it becomes one
// of the two types that it can be, and then its duplex mode has to suit: none on a port of type 0, and never
// none on a port of type 1.
void ApplyNetworkInfo(const NetworkInfo& info, CKdNBusUserModeInterface& bus, CVcpParameters& port) noexcept;

// Stores the baud rate, unchecked, and each of the others that is in its range; one that is not leaves the
// driver's setting as it is.
void ApplyLineSettings(const LineSettings& settings, CVcpParameters& port) noexcept;
