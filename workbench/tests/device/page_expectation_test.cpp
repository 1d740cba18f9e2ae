// What the workbench expects of a page: the rules that are easy to get wrong.
#include "workbench/demo/port_expectation.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "base/resource_ids.h"

namespace workbench {
namespace {

ParameterValues BusOfPort(std::uint32_t index) {
  ParameterValues bus(kBusSet);
  bus.SetNumber("SerialPortIndex", index);
  return bus;
}

std::wstring TextOf(const PageExpectation& page, int control) {
  const auto found = std::ranges::find(page.texts, control, &ExpectedControl::control);
  return found == page.texts.end() ? L"(none)" : found->shows;
}

TEST(PageExpectationTest, ReadsTheDevicesCodes) {
  const auto page =
      ExpectPage(PortState{.parity = 3, .stopBits = 3, .flowControl = 4, .state = 2, .dsrLine = 0},
                 ParameterValues(kPortSet), BusOfPort(2));
  EXPECT_EQ(TextOf(page, IDC_PORT_STATE), L"Tunneling");
  EXPECT_EQ(TextOf(page, IDC_PORT_MODE), L"RS232");
  EXPECT_EQ(TextOf(page, IDC_PORT_PARITY), L"Even");
  EXPECT_EQ(TextOf(page, IDC_PORT_STOP_BITS), L"1.5");
  EXPECT_EQ(TextOf(page, IDC_PORT_FLOW_CONTROL), L"Xon/Xoff");
  EXPECT_FALSE(page.duplexShown);
  EXPECT_EQ(page.port.Number("Databits"), 2u) << "the parity lands there";
  EXPECT_EQ(page.port.Number("Parity"), 0u);
  EXPECT_EQ(page.port.Number("Stopbits"), 1u);
  EXPECT_EQ(page.port.Number("FlowControl"), 4u);
  EXPECT_TRUE(page.dsr.checked && !page.dsr.enabled) << "a line that is missing";
  EXPECT_TRUE(!page.cts.checked && page.cts.enabled);
}

TEST(PageExpectationTest, FallsBackToTheDriversWithoutADevice) {
  ParameterValues port(kPortSet);
  port.SetNumber("Baudrate", 4800);
  port.SetNumber("FlowControl", 4);
  ParameterValues bus = BusOfPort(3);
  bus.SetNumber("PortType", 0x4);
  const auto page = ExpectPage(std::nullopt, port, bus);
  EXPECT_EQ(TextOf(page, IDC_PORT_STATE), L"Offline");
  EXPECT_EQ(TextOf(page, IDC_PORT_MODE), L"RS422/485");
  EXPECT_EQ(TextOf(page, IDC_PORT_BAUD_RATE), L"4800");
  EXPECT_EQ(TextOf(page, IDC_PORT_DATA_BITS), L"8");
  EXPECT_EQ(TextOf(page, IDC_PORT_FLOW_CONTROL), L"None") << "the drivers' Xon/Xoff has no word";
  EXPECT_TRUE(page.duplexShown);
  EXPECT_EQ(page.port, port);
}

TEST(PageExpectationTest, KnowsWhichPortsLearnOfTheirMode) {
  const PortState device{.portMode = 1};
  const auto first = ExpectPage(device, ParameterValues(kPortSet), BusOfPort(1));
  EXPECT_EQ(first.port.Number("PortType"), 1u);
  EXPECT_EQ(first.port.Number("DuplexMode"), 1u);
  EXPECT_TRUE(first.dsr.checked && !first.dsr.enabled);
  const auto third = ExpectPage(device, ParameterValues(kPortSet), BusOfPort(3));
  EXPECT_EQ(third.bus.Number("PortType"), 4u);
  EXPECT_EQ(third.port.Number("PortType"), 0u);
  EXPECT_TRUE(third.duplexShown);
}

}  // namespace
}  // namespace workbench
