// Where a port's device server answers on the web. Portable.
#pragma once

#include <cstdint>

#include "base/wide_string.h"
#include "config/nbus_parameters.h"

// The address of one port on its device server.
struct PortWebAddress {
  CWideString host;             // IPv4 address as text
  std::uint16_t webPort = 0;    // TCP port of the HTTP service
  std::uint32_t portIndex = 0;  // which port of the device server, from 1 (SerialPortIndex)
};

// The address that the bus driver's set holds. Of ServerWebPort only the low 16 bits count.
[[nodiscard]] PortWebAddress WebAddressOf(const CKdNBusUserModeInterface& bus);

// The path of the port's status document: "/p1".
[[nodiscard]] CWideString StatusDocumentPath(const PortWebAddress& web);

// The address of the device server's page for the port: "http://192.0.2.7:80/serialport1.html".
[[nodiscard]] CWideString PortWebPage(const PortWebAddress& web);
