// What the port page writes on apply, and how its boxes look.
#include "ui/port_rules.h"

#include <gtest/gtest.h>

#include <string>

#include "status/port_status.h"

namespace {

constexpr std::uint32_t kIndex = 3;  // bit 2 of the mask

template <class Row>
CVcpParameters PortOf(const Row& row) {
  CVcpParameters port;
  port.PortType = row.rs422485 ? 0x4 : 0xB;
  port.DuplexMode = row.duplex;
  port.CtsSupported = row.ctsSupported;
  port.DsrSupported = row.dsrSupported;
  port.EmulateCTSTrue = row.cts;
  port.EmulateDSRTrue = row.dsr;
  return port;
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
    CVcpParameters port = PortOf(row);
    EXPECT_EQ(ApplyHandshake(port, kIndex, row.boxes, row.settingsChanged), row.write);
    EXPECT_EQ(port.EmulateCTSTrue, row.ctsAfter);
    EXPECT_EQ(port.EmulateDSRTrue, row.dsrAfter);
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

TEST(PortRules, BoxesFollowTheKindOfPortAndItsLines) {
  const struct {
    const char* name;
    bool rs422485;
    std::uint32_t duplex, ctsSupported, dsrSupported, cts, dsr;
    const char* afterRefresh;
    bool marks;  // whether a box overrides a line
    const char* afterAdvanced;
  } cases[] = {
      {"RS-232", false, 0, 1, 1, 0, 0, "u--u--", false, "------"},
      {"RS-232, both overridden", false, 0, 1, 1, 1, 5, "c--c--", true, "------"},
      {"RS-232 without CTS", false, 0, 0, 1, 0, 0, "cddu--", false, "cdd---"},
      {"RS-232 without CTS, DSR overridden", false, 0, 0, 1, 0, 1, "cddc--", true, "cdd---"},
      {"RS-232 without DSR, whose label may stay", false, 0, 1, 0, 0, 0, "u--cdd", false, "---cd-"},
      {"RS-422", true, 1, 1, 1, 0, 0, "ueecdd", false, "uee---"},
      {"RS-422, CTS overridden, no mode", true, 0, 1, 1, 5, 0, "ceecdd", false, "cee---"},
      {"RS-422 without lines", true, 1, 0, 0, 0, 0, "cddcdd", false, "cddcd-"},
      {"RS-485", true, 2, 1, 1, 0, 0, "cddcdd", false, "cdd---"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    CVcpParameters port = PortOf(row);
    CKdNBusUserModeInterface bus;
    bus.SerialPortIndex = kIndex;
    EXPECT_EQ(Describe(HandshakeAfterAdvanced(port, kIndex)), row.afterAdvanced);
    const PortStatus status = ApplyStatusDocument(L"", port, bus);
    EXPECT_EQ(Describe(status.boxes), row.afterRefresh);
    EXPECT_EQ(status.showOverrideMarks, row.marks);
  }
}

}  // namespace
