// The two parameter sets: their order on the wire, their defaults, and what they hold before a driver spoke.
#include <gtest/gtest.h>

#include <cstdint>
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
template <class Set>
struct Registered {
  const wchar_t* name;
  std::uint32_t defaultValue;
  std::uint32_t Set::*number;
  CWideString Set::*text = nullptr;  // instead of a number
};

constexpr Registered<Port> kPort[] = {
    {L"PortType", 255, &Port::PortType},
    {L"MaxBaudRate", 1000000, &Port::MaxBaudRate},
    {L"MinBaudRate", 75, &Port::MinBaudRate},
    {L"DuplexMode", 0, &Port::DuplexMode},
    {L"Baudrate", 9600, &Port::Baudrate},
    {L"Databits", 3, &Port::Databits},
    {L"Parity", 0, &Port::Parity},
    {L"Stopbits", 0, &Port::Stopbits},
    {L"FlowControl", 0, &Port::FlowControl},
    {L"LogLevel", 0, &Port::LogLevel},
    {L"ReceiveTriggerLevel", 75, &Port::ReceiveTriggerLevel},
    {L"TransmitTriggerLevel", 10, &Port::TransmitTriggerLevel},
    {L"FlowControlTriggerLevel", 85, &Port::FlowControlTriggerLevel},
    {L"SupportedBaudRates", 0x1007FFFF, &Port::SupportedBaudRates},
    {L"SupportedParities", 0x1F00, &Port::SupportedParities},
    {L"SupportedDataBits", 0xF, &Port::SupportedDataBits},
    {L"SupportedStopBits", 0x7, &Port::SupportedStopBits},
    {L"SupportedFlowControls", 0xF, &Port::SupportedFlowControls},
    {L"SupportedDuplexModes", 0, &Port::SupportedDuplexModes},
    {L"OverridBaudRates", 0, &Port::OverridBaudRates},
    {L"OverrideDataBits", 0, &Port::OverrideDataBits},
    {L"OverrideParity", 0, &Port::OverrideParity},
    {L"OverrideStopbits", 0, &Port::OverrideStopbits},
    {L"OverrideFlowControl", 0, &Port::OverrideFlowControl},
    {L"EmulateCTSTrue", 0, &Port::EmulateCTSTrue},
    {L"EmulateDSRTrue", 0, &Port::EmulateDSRTrue},
    {L"422485CtsTrue", 0, &Port::_422485CtsTrue},
    {L"CtsSupported", 1, &Port::CtsSupported},
    {L"RtsSupported", 1, &Port::RtsSupported},
    {L"DtrSupported", 1, &Port::DtrSupported},
    {L"DsrSupported", 1, &Port::DsrSupported},
    {L"DcdSupported", 1, &Port::DcdSupported},
    {L"RiSupported", 1, &Port::RiSupported},
};
constexpr Registered<Bus> kBus[] = {
    {L"RxFifoSize", 512, &Bus::RxFifoSize},
    {L"TxFifoSize", 512, &Bus::TxFifoSize},
    {L"MaximumBaudRate", 921600, &Bus::MaximumBaudRate},
    {L"MinimumBaudRate", 60, &Bus::MinimumBaudRate},
    {L"PortType", 0, &Bus::PortType},
    {L"SerialPortType", 0, &Bus::SerialPortType},
    {L"InterfaceType", 0, nullptr, &Bus::InterfaceType},
    {L"AddressToConnect", 0, &Bus::AddressToConnect},
    {L"PortNumber", 0, &Bus::PortNumber},
    {L"ProtocolType", 2, &Bus::ProtocolType},
    {L"ConnectionIdleTimeout", 0, &Bus::ConnectionIdleTimeout},
    {L"ConnectionAttemptTimeout", 0, &Bus::ConnectionAttemptTimeout},
    {L"AutoDetect", 1, &Bus::AutoDetect},
    {L"MACAddress1", 0, &Bus::MACAddress1},
    {L"MACAddress2", 0, &Bus::MACAddress2},
    {L"ServerConfigPort", 9000, &Bus::ServerConfigPort},
    {L"ServerWebPort", 80, &Bus::ServerWebPort},
    {L"CtsSupported", 1, &Bus::CtsSupported},
    {L"RtsSupported", 1, &Bus::RtsSupported},
    {L"DtrSupported", 1, &Bus::DtrSupported},
    {L"DsrSupported", 1, &Bus::DsrSupported},
    {L"DcdSupported", 1, &Bus::DcdSupported},
    {L"RiSupported", 1, &Bus::RiSupported},
    {L"ForceCOMPortConnect", 0, &Bus::ForceCOMPortConnect},
    {L"IgnoreModelChecking", 0, &Bus::IgnoreModelChecking},
    {L"IgnoreForceProtocol", 0, &Bus::IgnoreForceProtocol},
    {L"SerialPortIndex", 1, &Bus::SerialPortIndex},
    {L"EnableCBFC", 1, &Bus::EnableCBFC},
    {L"CBFCInitialCredit", 4096, &Bus::CBFCInitialCredit},
    {L"CBFCInitialNegotiationTimeout", 500, &Bus::CBFCInitialNegotiationTimeout},
    {L"TelnetNegotiationTimeout", 5000, &Bus::TelnetNegotiationTimeout},
    {L"RealTxFifoEmulation", 1, &Bus::RealTxFifoEmulation},
    {L"RealTxFifoEmulationSize", 16, &Bus::RealTxFifoEmulationSize},
    {L"ExtraDelayOnWriteReq", 0, &Bus::ExtraDelayOnWriteReq},
    {L"Model", 0, nullptr, &Bus::Model},
};

template <class Set>
void ExpectRegistered(std::span<const Registered<Set>> expected) {
  const Set set;
  ASSERT_EQ(set.Items().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const CSsInformationItem& item = *set.Items()[i];
    SCOPED_TRACE(testing::Message() << "parameter " << i + 1);
    EXPECT_EQ(item.name, expected[i].name);
    EXPECT_EQ(item.marker, 0);
    EXPECT_EQ(item.extra, 0U);
    if (expected[i].text != nullptr) {
      ASSERT_EQ(item.type, CSsInformationItem::kString);
      EXPECT_EQ(item.value, &(set.*expected[i].text));
      EXPECT_TRUE(std::get<CWideString>(*item.defaultValue).IsEmpty());
    } else {
      ASSERT_EQ(item.type, CSsInformationItem::kDword);
      EXPECT_EQ(item.value, &(set.*expected[i].number));
      EXPECT_EQ(std::get<std::uint32_t>(*item.defaultValue), expected[i].defaultValue);
    }
  }
}

TEST(ConfigParametersTest, RegisteredInTheDriversOrder) {
  ExpectRegistered<Port>(kPort);
  ExpectRegistered<Bus>(kBus);
}

void AppendNumber(Bytes& stream, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) stream.push_back(static_cast<std::uint8_t>(value >> shift));
}

// Reads the stream in which every number is its position, from 1, and writes it again.
template <class Set>
void ExpectInPosition(std::span<const Registered<Set>> parameters, std::size_t size) {
  Bytes stream;
  for (std::uint32_t position = 1; position <= parameters.size(); ++position) {
    AppendNumber(stream, parameters[position - 1].text != nullptr ? 2 : position);
    if (parameters[position - 1].text != nullptr) stream.insert(stream.end(), {'T', '7', '\0'});
  }
  ASSERT_EQ(stream.size(), size);
  Set set;
  auto unread = static_cast<std::uint32_t>(size);
  ASSERT_TRUE(set.Deserialise(stream.data(), unread));
  for (std::uint32_t position = 1; position <= parameters.size(); ++position) {
    const Registered<Set>& parameter = parameters[position - 1];
    if (parameter.text != nullptr) {
      EXPECT_EQ(set.*parameter.text, L"T7");
    } else {
      EXPECT_EQ(set.*parameter.number, position);
    }
  }
  Bytes written(set.GetSerialisedSize());
  auto room = static_cast<std::uint32_t>(written.size());
  EXPECT_TRUE(set.Serialise(written.data(), room));
  EXPECT_EQ(written, stream);
}

TEST(ConfigParametersTest, StreamsFillTheMembersOfTheirNames) {
  ExpectInPosition<Port>(kPort, 132);
  ExpectInPosition<Bus>(kBus, 132 + 2 * 7);
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

}  // namespace
