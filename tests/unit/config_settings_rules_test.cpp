// Which parameters the settings of a management program change.
#include "config/settings_rules.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TEST(ConfigNetworkRulesTest, PortThatChangesItsTypeGetsTheDuplexModeOfTheNewOne) {
  struct Case {
    std::uint32_t portType, duplexMode;  // what the program asks for
    std::uint32_t typeBefore;            // what the port has; its duplex mode before is 2
    std::uint32_t typeAfter, duplexAfter;
  };
  constexpr Case kCases[] = {
      {1, 0, 0, 1, 1},  // a new RS-422/485 port needs a duplex mode
      {1, 7, 0, 1, 7},  // any mode that it is given is taken
      {0, 2, 1, 0, 0},  // a new RS-232 port has none
      {0, 2, 0, 0, 2},  // no change of type: the mode is stored as it is
      {2, 1, 0, 0, 1},  // not a type that a port can become
      {2, 0, 1, 1, 0},  //
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(testing::Message() << "type " << row.portType << " mode " << row.duplexMode << " on type "
                                    << row.typeBefore);
    CKdNBusUserModeInterface bus;
    CKdUVcpUserModeInterface port;
    port.PortType = row.typeBefore;
    port.DuplexMode = 2;
    ApplyNetworkInfo({.duplexMode = row.duplexMode, .portType = row.portType}, bus, port);
    EXPECT_EQ(bus.PortType, row.portType);
    EXPECT_EQ(port.PortType, row.typeAfter);
    EXPECT_EQ(port.DuplexMode, row.duplexAfter);
  }
}

TEST(ConfigLineRulesTest, SettingOutOfItsRangeStaysAsItWas) {
  struct Case {
    LineSettings asked;
    LineSettings stored;
  };
  constexpr Case kCases[] = {
      {{115200, 3, 4, 2, 8}, {115200, 3, 4, 2, 8}},
      {{0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}},
      {{0xFFFFFFFF, 4, 5, 3, 16}, {0xFFFFFFFF, 1, 2, 1, 4}},  // only the baud rate changes
      {{300, 0, 5, 0, 17}, {300, 0, 2, 0, 17}},               // one bit of the four is enough
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(testing::Message() << "case " << &row - kCases);
    CVcpParameters port;
    port.Baudrate = 9600;
    port.Databits = 1;
    port.Parity = 2;
    port.Stopbits = 1;
    port.FlowControl = 4;
    ApplyLineSettings(row.asked, port);
    EXPECT_EQ(port.Baudrate, row.stored.baudRate);
    EXPECT_EQ(port.Databits, row.stored.dataBits);
    EXPECT_EQ(port.Parity, row.stored.parity);
    EXPECT_EQ(port.Stopbits, row.stored.stopBits);
    EXPECT_EQ(port.FlowControl, row.stored.flowControl);
  }
}

}  // namespace
