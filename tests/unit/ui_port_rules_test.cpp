// What the port page writes on apply, and how its boxes look after the advanced settings.
#include "config/port_type.h"
#include "ui/port_rules.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr std::uint32_t kIndex = 3;  // bit 2 of the mask

CVcpParameters PortOf(bool rs422485, std::uint32_t duplex, std::uint32_t cts, std::uint32_t dsr) {
  CVcpParameters port;
  port.PortType = rs422485 ? 0x4 : 0xB;
  port.DuplexMode = duplex;
  port.EmulateCTSTrue = cts;
  port.EmulateDSRTrue = dsr;
  return port;
}

TEST(PortRules, MaskBitIsTakenModulo32) {
  EXPECT_TRUE(IsRs422485Port(0x4, 3));
  EXPECT_TRUE(IsRs422485Port(0x80000000, 0)) << "no port has the number 0";
  EXPECT_TRUE(IsRs422485Port(0x1, 33));
}

struct ApplyCase {
  const char* name;
  bool rs422485;
  std::uint32_t duplex;
  std::uint32_t ctsSupported, dsrSupported;
  std::uint32_t cts, dsr;  // settings before
  HandshakeBoxes boxes;
  bool settingsChanged;
  bool write;
  std::uint32_t ctsAfter, dsrAfter;
};

const ApplyCase kApplyCases[] = {
    {"nothing touched", false, 0, 1, 1, 0, 1, {false, true}, false, false, 0, 1},
    {"neither 0 nor 1 stays as it is", false, 0, 1, 1, 7, 9, {true, true}, false, false, 7, 9},
    {"CTS set", false, 0, 1, 1, 0, 0, {true, false}, false, true, 1, 0},
    {"CTS cleared", false, 0, 1, 1, 7, 0, {false, false}, false, true, 0, 0},
    {"DSR set", false, 0, 1, 1, 0, 0, {false, true}, false, true, 0, 1},
    {"no CTS line", false, 0, 0, 1, 0, 0, {true, false}, false, false, 0, 0},
    {"no DSR line", false, 0, 1, 0, 0, 0, {false, true}, false, false, 0, 0},
    {"RS-232 does not look at the duplex mode", false, 2, 1, 1, 0, 0, {true, false}, false, true, 1, 0},
    {"forced", false, 0, 1, 1, 0, 0, {false, false}, true, true, 0, 0},
    {"RS-422: CTS set, DSR ignored", true, 1, 1, 1, 0, 0, {true, true}, false, true, 1, 0},
    {"RS-422 without CTS line", true, 1, 0, 1, 0, 0, {true, true}, false, false, 0, 0},
    {"RS-485: the checked boxes are no wish", true, 2, 1, 1, 0, 0, {true, true}, false, false, 0, 0},
    {"RS-485 forced", true, 2, 1, 1, 0, 0, {true, true}, true, true, 0, 0},
};

TEST(PortRules, ApplyAdoptsOnlyWhatTheUserChanged) {
  for (const ApplyCase& row : kApplyCases) {
    SCOPED_TRACE(row.name);
    CVcpParameters port = PortOf(row.rs422485, row.duplex, row.cts, row.dsr);
    port.CtsSupported = row.ctsSupported;
    port.DsrSupported = row.dsrSupported;
    EXPECT_EQ(ApplyHandshake(port, kIndex, row.boxes, row.settingsChanged), row.write);
    EXPECT_EQ(port.EmulateCTSTrue, row.ctsAfter);
    EXPECT_EQ(port.EmulateDSRTrue, row.dsrAfter);
  }
}

std::string Text(const std::optional<bool>& value) {
  if (!value) return "-";
  return *value ? "yes" : "no";
}
std::string Text(const BoxChange& change) {
  return Text(change.checked) + " " + Text(change.boxEnabled) + " " + Text(change.labelEnabled);
}

struct BoxCase {
  const char* name;
  bool rs422485;
  std::uint32_t duplex;
  std::uint32_t ctsSupported, dsrSupported, cts;
  const char* ctsBox;  // checked, box enabled, label enabled; "-" stays as it is
  const char* dsrBox;
};

const BoxCase kBoxCases[] = {
    {"RS-232 with both lines", false, 0, 1, 1, 1, "- - -", "- - -"},
    {"RS-232 without DSR: its label stays enabled", false, 0, 1, 0, 0, "- - -", "yes no -"},
    {"RS-422, CTS not emulated", true, 1, 1, 1, 0, "no yes yes", "- - -"},
    {"RS-422, CTS emulated", true, 0, 1, 1, 5, "yes yes yes", "- - -"},
    {"RS-485", true, 2, 1, 1, 0, "yes no no", "- - -"},
    {"RS-422 without lines", true, 1, 0, 0, 0, "yes no no", "yes no -"},
};

TEST(PortRules, BoxesAfterTheAdvancedSettings) {
  for (const BoxCase& row : kBoxCases) {
    SCOPED_TRACE(row.name);
    CVcpParameters port = PortOf(row.rs422485, row.duplex, row.cts, 0);
    port.CtsSupported = row.ctsSupported;
    port.DsrSupported = row.dsrSupported;
    const HandshakeChange change = HandshakeAfterAdvanced(port, kIndex);
    EXPECT_EQ(Text(change.cts), row.ctsBox);
    EXPECT_EQ(Text(change.dsr), row.dsrBox);
  }
}

}  // namespace
