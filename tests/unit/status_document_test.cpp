#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "status/document_buffer.h"
#include "status/port_status.h"

namespace {

struct Port {
  CKdUVcpUserModeInterface port;
  CKdNBusUserModeInterface bus;

  explicit Port(std::uint32_t index = 1) {
    bus.SerialPortIndex = index;
    port.Baudrate = 19200;
    port.Databits = 3;
    port.Parity = 1;
    port.Stopbits = 2;
    port.FlowControl = 2;
  }
  PortStatus Adopt(const wchar_t* document) { return ApplyStatusDocument(document, port, bus); }
};

TEST(TagValueTest, ValueStandsBetweenTheFirstTags) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      // null: there is none
      {L"<baud>", nullptr},
      {L"9600</baud>", nullptr},
      {L"<baud>9600</baud>", L"9600"},
      {L"x<baud></baud>", L""},
      {L"<baud> 1\r\n</baud>", L" 1\r\n"},
      // The first closing tag of the whole text counts, also when a second one follows the value.
      {L"</baud><baud>9600</baud>", nullptr},
      {L"<baud>1<baud>2</baud>3</baud>", L"1<baud>2"},
  };
  for (const auto& [text, expected] : cases) {
    const auto value = ExtractTagValue(text, L"<baud>", L"</baud>");
    EXPECT_EQ(value, expected ? std::optional(CWideString(expected)) : std::nullopt) << text;
  }
}

TEST(StatusDocumentTest, EachValueIsShownAndAdoptedWhereItIsInRange) {
  using Shown = CWideString PortStatus::*;
  using Adopted = std::uint32_t CVcpParameters::*;
  const struct {
    const wchar_t* document;
    Shown text;
    const wchar_t* shown;
    Adopted member = &CVcpParameters::Parity;  // which no document changes
    std::uint32_t adopted = 1;
  } cases[] = {
      {L"", &PortStatus::baudRate, L"19200", &CVcpParameters::Baudrate, 19200},
      {L"", &PortStatus::dataBits, L"8", &CVcpParameters::Databits, 3},
      {L"", &PortStatus::stopBits, L"2", &CVcpParameters::Stopbits, 2},
      {L"", &PortStatus::flowControl, L"DTR/DSR", &CVcpParameters::FlowControl, 2},
      {L"", &PortStatus::parity, L"Odd"},
      {L"", &PortStatus::state, L"Offline"},
      {L"", &PortStatus::mode, L"RS232"},
      {L"<baud>115200</baud>", &PortStatus::baudRate, L"115200", &CVcpParameters::Baudrate, 115200},
      {L"<baud>fast</baud>", &PortStatus::baudRate, L"fast", &CVcpParameters::Baudrate, 0},
      {L"<baud>-5</baud>", &PortStatus::baudRate, L"-5", &CVcpParameters::Baudrate, 0xFFFFFFFB},
      // The data bits are the device's own number, shown as it stands.
      {L"<datasize>2</datasize>", &PortStatus::dataBits, L"2", &CVcpParameters::Databits, 2},
      {L"<datasize>4</datasize>", &PortStatus::dataBits, L"4", &CVcpParameters::Databits, 3},
      // The parity lands in the data bits, as far as it is in their range.
      {L"<parity>1</parity>", &PortStatus::parity, L"None", &CVcpParameters::Databits, 0},
      {L"<parity>2</parity>", &PortStatus::parity, L"Odd", &CVcpParameters::Databits, 1},
      {L"<parity>3</parity>", &PortStatus::parity, L"Even", &CVcpParameters::Databits, 2},
      {L"<parity>3</parity>", &PortStatus::parity, L"Even"},
      {L"<parity>4</parity>", &PortStatus::parity, L"Mark", &CVcpParameters::Databits, 3},
      {L"<parity>5</parity>", &PortStatus::parity, L"Space", &CVcpParameters::Databits, 3},
      {L"<parity>6</parity>", &PortStatus::parity, L"None", &CVcpParameters::Databits, 0},
      {L"<stopbits>0</stopbits>", &PortStatus::stopBits, L"None", &CVcpParameters::Stopbits, 0},
      {L"<stopbits>1</stopbits>", &PortStatus::stopBits, L"1", &CVcpParameters::Stopbits, 0},
      {L"<stopbits>2</stopbits>", &PortStatus::stopBits, L"2", &CVcpParameters::Stopbits, 2},
      {L"<stopbits> 3x</stopbits>", &PortStatus::stopBits, L"1.5", &CVcpParameters::Stopbits, 1},
      {L"<flowcontrol>1</flowcontrol>", &PortStatus::flowControl, L"None", &CVcpParameters::FlowControl, 0},
      {L"<flowcontrol>2</flowcontrol>", &PortStatus::flowControl, L"CTS/RTS", &CVcpParameters::FlowControl,
       1},
      {L"<flowcontrol>3</flowcontrol>", &PortStatus::flowControl, L"DTR/DSR", &CVcpParameters::FlowControl,
       2},
      {L"<flowcontrol>4</flowcontrol>", &PortStatus::flowControl, L"Xon/Xoff", &CVcpParameters::FlowControl,
       4},
      {L"<duplex>1</duplex>", &PortStatus::duplex, L"RS422 full-duplex mode", &CVcpParameters::DuplexMode, 1},
      {L"<duplex>2</duplex>", &PortStatus::duplex, L"RS485 half-duplex autogating mode",
       &CVcpParameters::DuplexMode, 2},
      {L"<duplex>3</duplex>", &PortStatus::duplex, L"None", &CVcpParameters::DuplexMode, 0},
      {L"<ctsline>0</ctsline>", &PortStatus::state, L"Offline", &CVcpParameters::CtsSupported, 0},
      {L"<dsrline>7</dsrline>", &PortStatus::state, L"Offline", &CVcpParameters::DsrSupported, 1},
      {L"<state>2</state>", &PortStatus::state, L"Tunneling"},
      {L"<state>3</state>", &PortStatus::state, L"Offline"},
      {L"<portmode>3</portmode>", &PortStatus::mode, L"I/O Control"},
      {L"<portmode>4</portmode>", &PortStatus::mode, L"Unknown"},
      {L"<portmode>01</portmode>", &PortStatus::mode, L"Unknown"},
  };
  for (const auto& c : cases) {
    Port p;
    p.port.DsrSupported = 0;
    EXPECT_EQ(p.Adopt(c.document).*c.text, c.shown) << c.document;
    EXPECT_EQ(p.port.*c.member, c.adopted) << c.document;
  }
}

// What happens to both masks and the duplex mode when the device is, or is not, an RS-422/485 port.
TEST(StatusDocumentTest, Rs422485ModeIsAdoptedWithItsLimits) {
  const struct {
    const char* name;
    std::uint32_t index, portType, busType, duplex;
    const wchar_t* document;
    std::uint32_t portTypeAfter, busTypeAfter, duplexAfter;
    const wchar_t* mode;
    bool showDuplex;
  } cases[] = {
      {"first port", 1, 0, 0, 0, L"<portmode>1</portmode>", 1, 1, 1, L"RS422/485", true},
      {"duplex kept", 1, 0, 0, 2, L"<portmode>1</portmode>", 1, 1, 2, L"RS422/485", true},
      {"third port", 3, 0, 0, 0, L"<portmode>1</portmode>", 0, 4, 0, L"RS422/485", true},
      {"offline, last 485 port", 3, 0, 4, 0, L"", 0, 4, 0, L"RS422/485", true},
      {"offline, more behind it", 1, 0, 0x81, 0, L"", 0, 0x81, 0, L"Unknown", true},
      {"device says RS232", 2, 2, 0, 1, L"<portmode>0</portmode>", 2, 0, 1, L"RS232", true},
      {"index 0 is bit 31", 0, 0, 0, 0, L"<portmode>1</portmode>", 0, 0x80000000, 0, L"RS422/485", true},
      {"the 33rd port shares bit 0", 33, 0, 0, 0, L"<portmode>1</portmode>", 1, 1, 1, L"RS422/485", true},
      {"plain", 2, 0, 0, 0, L"<portmode>0</portmode>", 0, 0, 0, L"RS232", false},
  };
  for (const auto& c : cases) {
    Port p(c.index);
    p.port.PortType = c.portType;
    p.bus.PortType = c.busType;
    p.port.DuplexMode = c.duplex;
    const PortStatus status = p.Adopt(c.document);
    EXPECT_EQ(p.port.PortType, c.portTypeAfter) << c.name;
    EXPECT_EQ(p.bus.PortType, c.busTypeAfter) << c.name;
    EXPECT_EQ(p.port.DuplexMode, c.duplexAfter) << c.name;
    EXPECT_EQ(status.mode, c.mode) << c.name;
    EXPECT_EQ(status.showDuplex, c.showDuplex) << c.name;
  }
}

std::string_view Receive(CDocumentBuffer& buffer, std::string_view piece) {
  std::memcpy(buffer.Room().data(), piece.data(), piece.size());
  buffer.Accept(piece.size());
  return buffer.Document();
}

TEST(DocumentBufferTest, LastPieceUpToItsFirstZeroIsTheDocument) {
  CDocumentBuffer buffer;
  EXPECT_EQ(Receive(buffer, std::string(4096, 'a')), std::string(4096, 'a'));
  EXPECT_EQ(Receive(buffer, "second"), "second");
  EXPECT_EQ(Receive(buffer, ""), "second");
  EXPECT_EQ(Receive(buffer, std::string_view("a\0b", 3)), "a");
}

}  // namespace
