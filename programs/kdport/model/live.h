// What a device server says about a port at this moment, in the words of the port's page.
#pragma once

#include <string>

namespace KdPort {

struct LiveStatus {
  bool online = false;  // false: the device server did not answer; the others are then what the drivers have
  std::string baud, dataBits, parity, stopBits, flowControl;
  std::string state;
  std::string mode;
};

}  // namespace KdPort
