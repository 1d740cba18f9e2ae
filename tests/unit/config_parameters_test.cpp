// The two parameter sets: their order on the wire, their defaults, and what they hold before a driver spoke.
#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "config/nbus_parameters.h"
#include "config/vcp_parameters.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Port = CKdUVcpUserModeInterface;
using Bus = CKdNBusUserModeInterface;

// What the drivers register, in their order. Nothing here may ever change.
struct Registered {
  const wchar_t* name;
  std::uint32_t defaultValue;
};
constexpr std::uint32_t kText = 0xABCD0000;  // marks a text in the lists

constexpr Registered kPort[] = {
    {L"PortType", 255},
    {L"MaxBaudRate", 1000000},
    {L"MinBaudRate", 75},
    {L"DuplexMode", 0},
    {L"Baudrate", 9600},
    {L"Databits", 3},
    {L"Parity", 0},
    {L"Stopbits", 0},
    {L"FlowControl", 0},
    {L"LogLevel", 0},
    {L"ReceiveTriggerLevel", 75},
    {L"TransmitTriggerLevel", 10},
    {L"FlowControlTriggerLevel", 85},
    {L"SupportedBaudRates", 0x1007FFFF},
    {L"SupportedParities", 0x1F00},
    {L"SupportedDataBits", 0xF},
    {L"SupportedStopBits", 0x7},
    {L"SupportedFlowControls", 0xF},
    {L"SupportedDuplexModes", 0},
    {L"OverridBaudRates", 0},
    {L"OverrideDataBits", 0},
    {L"OverrideParity", 0},
    {L"OverrideStopbits", 0},
    {L"OverrideFlowControl", 0},
    {L"EmulateCTSTrue", 0},
    {L"EmulateDSRTrue", 0},
    {L"422485CtsTrue", 0},
    {L"CtsSupported", 1},
    {L"RtsSupported", 1},
    {L"DtrSupported", 1},
    {L"DsrSupported", 1},
    {L"DcdSupported", 1},
    {L"RiSupported", 1},
};
constexpr Registered kBus[] = {
    {L"RxFifoSize", 512},
    {L"TxFifoSize", 512},
    {L"MaximumBaudRate", 921600},
    {L"MinimumBaudRate", 60},
    {L"PortType", 0},
    {L"SerialPortType", 0},
    {L"InterfaceType", kText},
    {L"AddressToConnect", 0},
    {L"PortNumber", 0},
    {L"ProtocolType", 2},
    {L"ConnectionIdleTimeout", 0},
    {L"ConnectionAttemptTimeout", 0},
    {L"AutoDetect", 1},
    {L"MACAddress1", 0},
    {L"MACAddress2", 0},
    {L"ServerConfigPort", 9000},
    {L"ServerWebPort", 80},
    {L"CtsSupported", 1},
    {L"RtsSupported", 1},
    {L"DtrSupported", 1},
    {L"DsrSupported", 1},
    {L"DcdSupported", 1},
    {L"RiSupported", 1},
    {L"ForceCOMPortConnect", 0},
    {L"IgnoreModelChecking", 0},
    {L"IgnoreForceProtocol", 0},
    {L"SerialPortIndex", 1},
    {L"EnableCBFC", 1},
    {L"CBFCInitialCredit", 4096},
    {L"CBFCInitialNegotiationTimeout", 500},
    {L"TelnetNegotiationTimeout", 5000},
    {L"RealTxFifoEmulation", 1},
    {L"RealTxFifoEmulationSize", 16},
    {L"ExtraDelayOnWriteReq", 0},
    {L"Model", kText},
};

void ExpectRegistered(const CSsInformationSet& set, std::span<const Registered> expected) {
  ASSERT_EQ(set.Items().size(), expected.size());
  std::set<const void*> members;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const CSsInformationItem& item = *set.Items()[i];
    SCOPED_TRACE(testing::Message() << "parameter " << i + 1);
    EXPECT_EQ(item.name, expected[i].name);
    EXPECT_EQ(item.marker, 0);
    EXPECT_EQ(item.extra, 0U);
    EXPECT_TRUE(members.insert(item.value).second) << "two parameters share a member";
    if (expected[i].defaultValue == kText) {
      ASSERT_EQ(item.type, CSsInformationItem::kString);
      EXPECT_TRUE(std::get<CWideString>(*item.defaultValue).IsEmpty());
    } else {
      ASSERT_EQ(item.type, CSsInformationItem::kDword);
      EXPECT_EQ(std::get<std::uint32_t>(*item.defaultValue), expected[i].defaultValue);
    }
  }
}

TEST(ConfigParametersTest, RegisteredInTheDriversOrder) {
  const Port port;
  ExpectRegistered(port, kPort);
  const Bus bus;
  ExpectRegistered(bus, kBus);
}

void AppendNumber(Bytes& stream, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) stream.push_back(static_cast<std::uint8_t>(value >> shift));
}

// The stream in which every number is its position, from 1.
Bytes PositionStream(std::span<const Registered> parameters) {
  Bytes stream;
  std::uint32_t position = 0;
  for (const Registered& parameter : parameters) {
    ++position;
    if (parameter.defaultValue == kText) {
      for (const char byte : {'\2', '\0', '\0', '\0', 'T', '7', '\0'})
        stream.push_back(static_cast<std::uint8_t>(byte));
    } else {
      AppendNumber(stream, position);
    }
  }
  return stream;
}

TEST(ConfigParametersTest, PortStreamFillsTheMembersOfItsNames) {
  Port port;
  const Bytes stream = PositionStream(kPort);
  ASSERT_EQ(stream.size(), 132U);
  std::uint32_t unread = 132;
  ASSERT_TRUE(port.Deserialise(stream.data(), unread));
  // In the order of the members, which is not the order of the stream.
  const std::uint32_t members[] = {port.OverridBaudRates,
                                   port.OverrideStopbits,
                                   port.OverrideParity,
                                   port.OverrideDataBits,
                                   port.OverrideFlowControl,
                                   port.EmulateCTSTrue,
                                   port.EmulateDSRTrue,
                                   port.PortType,
                                   port.MinBaudRate,
                                   port.MaxBaudRate,
                                   port.DuplexMode,
                                   port._422485CtsTrue,
                                   port.Baudrate,
                                   port.Databits,
                                   port.Parity,
                                   port.Stopbits,
                                   port.FlowControl,
                                   port.ReceiveTriggerLevel,
                                   port.TransmitTriggerLevel,
                                   port.FlowControlTriggerLevel,
                                   port.SupportedBaudRates,
                                   port.SupportedParities,
                                   port.SupportedDataBits,
                                   port.SupportedStopBits,
                                   port.SupportedFlowControls,
                                   port.SupportedDuplexModes,
                                   port.LogLevel,
                                   port.CtsSupported,
                                   port.RtsSupported,
                                   port.DtrSupported,
                                   port.DsrSupported,
                                   port.DcdSupported,
                                   port.RiSupported};
  const std::uint32_t positions[] = {20, 23, 22, 21, 24, 25, 26, 1,  3,  2,  4,  27, 5,  6,  7,  8, 9,
                                     11, 12, 13, 14, 15, 16, 17, 18, 19, 10, 28, 29, 30, 31, 32, 33};
  EXPECT_EQ(std::vector(std::begin(members), std::end(members)),
            std::vector(std::begin(positions), std::end(positions)));
}

TEST(ConfigParametersTest, BusStreamFillsTheMembersOfItsNames) {
  Bus bus;
  const Bytes stream = PositionStream(kBus);
  ASSERT_EQ(stream.size(), 132U + 2 * 7);
  auto unread = static_cast<std::uint32_t>(stream.size());
  ASSERT_TRUE(bus.Deserialise(stream.data(), unread));
  EXPECT_EQ(bus.InterfaceType, L"T7");
  EXPECT_EQ(bus.Model, L"T7");
  const std::uint32_t members[] = {bus.RxFifoSize,
                                   bus.TxFifoSize,
                                   bus.MaximumBaudRate,
                                   bus.MinimumBaudRate,
                                   bus.PortType,
                                   bus.SerialPortType,
                                   bus.AddressToConnect,
                                   bus.PortNumber,
                                   bus.ProtocolType,
                                   bus.ConnectionIdleTimeout,
                                   bus.ConnectionAttemptTimeout,
                                   bus.AutoDetect,
                                   bus.MACAddress1,
                                   bus.MACAddress2,
                                   bus.ServerConfigPort,
                                   bus.ServerWebPort,
                                   bus.CtsSupported,
                                   bus.RtsSupported,
                                   bus.DtrSupported,
                                   bus.DsrSupported,
                                   bus.DcdSupported,
                                   bus.RiSupported,
                                   bus.ForceCOMPortConnect,
                                   bus.IgnoreModelChecking,
                                   bus.IgnoreForceProtocol,
                                   bus.SerialPortIndex,
                                   bus.EnableCBFC,
                                   bus.CBFCInitialCredit,
                                   bus.CBFCInitialNegotiationTimeout,
                                   bus.TelnetNegotiationTimeout,
                                   bus.RealTxFifoEmulation,
                                   bus.RealTxFifoEmulationSize,
                                   bus.ExtraDelayOnWriteReq};
  std::uint32_t position = 0;
  for (const std::uint32_t member : members) {
    ++position;
    if (position == 7) ++position;  // a text
    EXPECT_EQ(member, position);
  }

  Bytes written(bus.GetSerialisedSize());
  auto room = static_cast<std::uint32_t>(written.size());
  EXPECT_TRUE(bus.Serialise(written.data(), room));
  EXPECT_EQ(written, stream);
}

TEST(ConfigParametersTest, BeforeADriverSpoke) {
  Port port;
  EXPECT_EQ(port.GetSerialisedSize(), 132U);
  Bytes stream(132);
  std::uint32_t room = 132;
  ASSERT_TRUE(port.Serialise(stream.data(), room));
  Bytes expected;
  const std::uint32_t kUnknown = 0xFFFFFFFF;
  for (const std::uint32_t value :
       {0U,       921600U,  60U,      0U,       0U,       0U,       0U,       0U,   1U, 0U, kUnknown,
        kUnknown, kUnknown, kUnknown, kUnknown, kUnknown, kUnknown, kUnknown, 255U, 0U, 0U, 0U,
        0U,       0U,       0U,       0U,       0U,       1U,       1U,       1U,   1U, 1U, 1U}) {
    AppendNumber(expected, value);
  }
  EXPECT_EQ(stream, expected);

  Bus bus;
  EXPECT_TRUE(bus.InterfaceType.IsEmpty());
  EXPECT_TRUE(bus.Model.IsEmpty());
  EXPECT_EQ(bus.GetSerialisedSize(), 142U);
  Bytes zeros(142, 0xEE);
  room = 142;
  ASSERT_TRUE(bus.Serialise(zeros.data(), room));
  EXPECT_EQ(zeros, Bytes(142)) << "nothing indeterminate reaches a driver";
}

TEST(ConfigParametersTest, EveryShorterStreamFailsAndKeepsWhatItHeld) {
  const Bytes stream = PositionStream(kPort);
  for (std::size_t size = 0; size < stream.size(); ++size) {
    Port port;
    port.PortType = 100;
    port.RiSupported = 133;
    const Bytes shorter(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(size));
    auto unread = static_cast<std::uint32_t>(size);
    EXPECT_FALSE(port.Deserialise(shorter.data(), unread)) << size;
    EXPECT_EQ(unread, size % 4) << size;
    EXPECT_EQ(port.PortType, size < 4 ? 100U : 1U) << size;
    EXPECT_EQ(port.RiSupported, 133U) << size;
  }
}

}  // namespace
