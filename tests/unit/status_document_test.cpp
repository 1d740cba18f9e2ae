#include <gtest/gtest.h>

#include <array>
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
      {L"", nullptr},
      {L"<baud>", nullptr},
      {L"9600</baud>", nullptr},
      {L"<baud>9600</baud>", L"9600"},
      {L"x<baud></baud>", L""},
      {L"<baud> 1\r\n</baud>", L" 1\r\n"},
      {L"</baud><baud>9600", nullptr},
      // The first closing tag of the whole text counts, also when a second one follows the value.
      {L"</baud><baud>9600</baud>", nullptr},
      {L"<baud>1<baud>2</baud>3</baud>", L"1<baud>2"},
      {L"<baud>&lt;</baud>", L"&lt;"},
  };
  for (const auto& [text, expected] : cases) {
    const auto value = ExtractTagValue(text, L"<baud>", L"</baud>");
    EXPECT_EQ(value, expected ? std::optional(CWideString(expected)) : std::nullopt) << text;
  }
}

TEST(StatusDocumentTest, WhatTheDocumentHasIsShownAndAdopted) {
  using Settings = std::array<std::uint32_t, 8>;  // to the lines, CTS and DSR
  const struct {
    const wchar_t* document;
    const wchar_t* shown;
    Settings adopted;
  } cases[] = {
      {L"", L"19200|8|Odd|2|DTR/DSR|None|Offline|RS232", {19200, 3, 1, 2, 2, 0, 1, 0}},
      // The data bits are the device's own number, shown as it stands.
      {L"<baud>115200</baud><datasize>2</datasize><stopbits>3</stopbits><flowcontrol>4</flowcontrol>"
       L"<duplex>2</duplex><state>1</state><portmode>0</portmode><ctsline>0</ctsline><dsrline>7</dsrline>",
       L"115200|2|Odd|1.5|Xon/Xoff|RS485 half-duplex autogating mode|Connected|RS232",
       {115200, 2, 1, 1, 4, 2, 0, 1}},
  };
  for (const auto& c : cases) {
    Port p;
    p.port.DsrSupported = 0;
    const PortStatus shown = p.Adopt(c.document);
    EXPECT_EQ(CWideString::Format(L"%s|%s|%s|%s|%s|%s|%s|%s", shown.baudRate, shown.dataBits, shown.parity,
                                  shown.stopBits, shown.flowControl, shown.duplex, shown.state, shown.mode),
              c.shown);
    EXPECT_FALSE(shown.showDuplex);
    EXPECT_EQ((Settings{p.port.Baudrate, p.port.Databits, p.port.Parity, p.port.Stopbits, p.port.FlowControl,
                        p.port.DuplexMode, p.port.CtsSupported, p.port.DsrSupported}),
              c.adopted);
  }
}

TEST(StatusDocumentTest, ParityLandsInTheDataBitsAndNumbersOutOfRangeAreNotStored) {
  const struct {
    const wchar_t* document;
    const wchar_t* parity;
    std::uint32_t baud, dataBits;
  } cases[] = {
      {L"<parity>3</parity>", L"Even", 19200, 2},
      {L"<parity>1</parity>", L"None", 19200, 0},
      {L"<parity>5</parity>", L"Space", 19200, 3},  // index 4 is no data-bits setting
      {L"<parity>none</parity>", L"None", 19200, 0},
      {L"<datasize>1</datasize><parity>4</parity>", L"Mark", 19200, 3},
      {L"<datasize>4</datasize>", L"Odd", 19200, 3},
      {L"<datasize>-1</datasize>", L"Odd", 19200, 3},
      {L"<datasize>x</datasize>", L"Odd", 19200, 0},
      {L"<baud>fast</baud>", L"Odd", 0, 3},
      {L"<baud>-5</baud>", L"Odd", 0xFFFFFFFB, 3},
      {L"<baud>99999999999</baud>", L"Odd", 0x7FFFFFFF, 3},
  };
  for (const auto& c : cases) {
    Port p;
    EXPECT_EQ(p.Adopt(c.document).parity, c.parity) << c.document;
    EXPECT_EQ(p.port.Baudrate, c.baud) << c.document;
    EXPECT_EQ(p.port.Databits, c.dataBits) << c.document;
    EXPECT_EQ(p.port.Parity, 1U) << c.document;
  }
}

TEST(StatusDocumentTest, StateAndModeAreExactlyOneDigit) {
  const struct {
    const wchar_t* document;
    const wchar_t* state;
    const wchar_t* mode;
  } cases[] = {
      {L"<state>0</state><portmode>3</portmode>", L"Idle", L"I/O Control"},
      {L"<state>2</state><portmode>2</portmode>", L"Tunneling", L"RS232/422/485"},
      {L"<state> 1</state><portmode>1 </portmode>", L"Offline", L"Unknown"},
      {L"<state>3</state><portmode>4</portmode>", L"Offline", L"Unknown"},
      {L"<state></state><portmode></portmode>", L"Offline", L"Unknown"},
      {L"<state>/</state><portmode>01</portmode>", L"Offline", L"Unknown"},
  };
  for (const auto& c : cases) {
    Port p;
    const PortStatus status = p.Adopt(c.document);
    EXPECT_EQ(status.state, c.state) << c.document;
    EXPECT_EQ(status.mode, c.mode) << c.document;
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
      {"first port, other bits", 1, 4, 0, 0, L"<portmode>1</portmode>", 4, 1, 0, L"RS422/485", true},
      {"offline, last 485 port", 3, 0, 4, 0, L"", 0, 4, 0, L"RS422/485", true},
      {"offline, another behind it", 3, 0, 12, 0, L"", 0, 12, 0, L"I/O Control", true},
      {"offline, more behind it", 1, 0, 0x81, 0, L"", 0, 0x81, 0, L"Unknown", true},
      {"device says RS232", 2, 2, 0, 1, L"<portmode>0</portmode>", 2, 0, 1, L"RS232", true},
      {"index 0 is bit 31", 0, 0, 0, 0, L"<portmode>1</portmode>", 0, 0x80000000, 0, L"RS422/485", true},
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

// c checked, u unchecked; e enabled, d disabled, - left alone: box of CTS, label of CTS, the same of DSR.
std::string Describe(const HandshakeChange& change) {
  const auto enabled = [](const std::optional<bool>& on) { return !on ? '-' : *on ? 'e' : 'd'; };
  std::string text;
  for (const BoxChange& box : {change.cts, change.dsr}) {
    text += !box.checked ? '-' : *box.checked ? 'c' : 'u';
    text += enabled(box.boxEnabled);
    text += enabled(box.labelEnabled);
  }
  return text;
}

TEST(StatusDocumentTest, BoxesFollowKindOfPortAndItsLines) {
  const struct {
    const char* name;
    std::uint32_t portType, duplex, emulateCts, emulateDsr, cts, dsr;
    const char* boxes;
    bool marks;
  } cases[] = {
      {"RS-232, nothing overridden", 0, 0, 0, 0, 1, 1, "u--u--", false},
      {"RS-232, both overridden", 0, 0, 1, 5, 1, 1, "c--c--", true},
      {"RS-232 without CTS", 0, 0, 0, 0, 0, 1, "cddu--", false},
      {"RS-232 without CTS, DSR overridden", 0, 0, 0, 1, 0, 1, "cddc--", true},
      {"RS-232 without lines", 0, 2, 1, 1, 0, 0, "cddcdd", false},
      {"RS-422", 1, 1, 1, 0, 1, 1, "ceecdd", false},
      {"RS-422, CTS not overridden", 1, 1, 0, 0, 1, 0, "ueecdd", false},
      {"RS-422 without CTS", 1, 1, 0, 0, 0, 1, "cddcdd", false},
      {"RS-485", 1, 2, 0, 0, 1, 1, "cddcdd", false},
  };
  for (const auto& c : cases) {
    Port p;
    p.port.PortType = c.portType;
    p.port.DuplexMode = c.duplex;
    p.port.EmulateCTSTrue = c.emulateCts;
    p.port.EmulateDSRTrue = c.emulateDsr;
    p.port.CtsSupported = c.cts;
    p.port.DsrSupported = c.dsr;
    const PortStatus status = p.Adopt(L"");
    EXPECT_EQ(Describe(status.boxes), c.boxes) << c.name;
    EXPECT_EQ(status.showOverrideMarks, c.marks) << c.name;
  }
}

std::string_view Receive(CDocumentBuffer& buffer, std::string_view piece) {
  std::memcpy(buffer.Room().data(), piece.data(), piece.size());
  buffer.Accept(piece.size());
  return buffer.Document();
}

TEST(DocumentBufferTest, LastPieceUpToItsFirstZeroIsTheDocument) {
  CDocumentBuffer buffer;
  EXPECT_EQ(buffer.Document(), "");
  EXPECT_EQ(Receive(buffer, std::string(4096, 'a')), std::string(4096, 'a'));
  EXPECT_EQ(Receive(buffer, "second"), "second");
  EXPECT_EQ(Receive(buffer, ""), "second");
  EXPECT_EQ(Receive(buffer, std::string_view("a\0b", 3)), "a");
}

}  // namespace
