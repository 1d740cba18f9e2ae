// The state of one serial port as the device server knows it, and the documents it makes of it.
//
// All numbers are the device server's own codes, which count from 1 where the drivers count from 0.
#pragma once

#include <optional>
#include <string>

namespace workbench {

// One port. A member without a value is a tag that the status document does not have.
struct PortState {
  std::optional<unsigned> baudRate = 9600;
  std::optional<unsigned> dataBits = 8;
  std::optional<unsigned> parity = 1;       // 1 none, 2 odd, 3 even, 4 mark, 5 space
  std::optional<unsigned> stopBits = 1;     // 1 one, 2 two, 3 one and a half
  std::optional<unsigned> flowControl = 1;  // 1 none, 2 CTS/RTS, 3 DTR/DSR, 4 Xon/Xoff
  std::optional<unsigned> duplex = 0;       // 0 none, 1 RS-422 full duplex, 2 RS-485 half duplex
  std::optional<unsigned> state = 0;        // 0 idle, 1 connected, 2 tunneling
  std::optional<unsigned> portMode = 0;     // 0 RS-232, 1 RS-422/485, 2 RS-232/422/485, 3 I/O control
  std::optional<unsigned> ctsLine = 1;      // 1: the port has the line
  std::optional<unsigned> dsrLine = 1;
};

// The status document, "<baud>9600</baud>" and so on, one tag per line. ASCII.
[[nodiscard]] std::string StatusDocument(const PortState& state);

}  // namespace workbench
