// What the port page shows and writes when it opens: live values, fall-backs, and the rows and boxes of each
// kind of port.
#include "rig_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "base/resource_ids.h"

namespace {

using workbench::ParameterValues;
using workbench::PortState;

constexpr wchar_t kOffline[] = L"Cannot load device information data from the device. Device may be offline.";

struct ShownRow {
  const char* name;
  std::function<void(Rig&)> setUp;
  const wchar_t *state, *mode, *baudRate, *dataBits, *parity, *stopBits, *flowControl;
  const wchar_t* duplex;  // null: the row is hidden
  const char *ctsBox, *dsrBox;
};

void SetDevice(Rig& rig, const PortState& state) {
  rig.web.SetPort(1, state);
}

const ShownRow kRows[] = {
    {"RS-232, idle", [](Rig& rig) { SetDevice(rig, {}); }, L"Idle", L"RS232", L"9600", L"8", L"None", L"1",
     L"None", nullptr, "clear", "clear"},
    {"RS-232, connected, everything different from the driver",
     [](Rig& rig) {
       SetDevice(rig, {.baudRate = 115200,
                       .dataBits = 7,
                       .parity = 3,
                       .stopBits = 3,
                       .flowControl = 4,
                       .state = 1,
                       .portMode = 2});
       rig.PortSet().SetNumber("EmulateCTSTrue", 1);
       rig.PortSet().SetNumber("EmulateDSRTrue", 7);
     },
     L"Connected", L"RS232/422/485", L"115200", L"7", L"Even", L"1.5", L"Xon/Xoff", nullptr, "checked",
     "checked"},
    {"the device server is off: the driver's values",
     [](Rig& rig) {
       rig.web.Stop();
       rig.PortSet().SetNumber("Baudrate", 19200);
       rig.PortSet().SetNumber("Databits", 2);
       rig.PortSet().SetNumber("Parity", 1);
       rig.PortSet().SetNumber("Stopbits", 2);
       rig.PortSet().SetNumber("FlowControl", 2);
     },
     L"Offline", L"RS232", L"19200", L"7", L"Odd", L"2", L"DTR/DSR", nullptr, "clear", "clear"},
    {"RS-422: no DSR, CTS as set",
     [](Rig& rig) {
       SetDevice(rig, {.duplex = 1, .state = 2, .portMode = 1});
       rig.PortSet().SetNumber("PortType", 1);
       rig.BusSet().SetNumber("PortType", 1);
       rig.PortSet().SetNumber("EmulateCTSTrue", 1);
     },
     L"Tunneling", L"RS422/485", L"9600", L"8", L"None", L"1", L"None", L"RS422 full-duplex mode", "checked",
     "checked, disabled, label disabled"},
    {"RS-485: neither DSR nor CTS",
     [](Rig& rig) {
       SetDevice(rig, {.duplex = 2, .portMode = 1});
       rig.PortSet().SetNumber("PortType", 1);
       rig.BusSet().SetNumber("PortType", 1);
     },
     L"Idle", L"RS422/485", L"9600", L"8", L"None", L"1", L"None", L"RS485 half-duplex autogating mode",
     "checked, disabled, label disabled", "checked, disabled, label disabled"},
    {"RS-232 without a CTS line", [](Rig& rig) { SetDevice(rig, {.ctsLine = 0}); }, L"Idle", L"RS232",
     L"9600", L"8", L"None", L"1", L"None", nullptr, "checked, disabled, label disabled", "clear"},
    {"RS-232 without a DSR line", [](Rig& rig) { SetDevice(rig, {.dsrLine = 0}); }, L"Idle", L"RS232",
     L"9600", L"8", L"None", L"1", L"None", nullptr, "clear", "checked, disabled, label disabled"},
    {"only the bus knew that the port is RS-422/485: the port learns it after its duplex mode was shown",
     [](Rig& rig) {
       rig.web.Stop();
       rig.BusSet().SetNumber("PortType", 1);
     },
     L"Offline", L"RS422/485", L"9600", L"8", L"None", L"1", L"None", L"None", "clear",
     "checked, disabled, label disabled"},
};

TEST(PortPageStatus, ShowsWhatTheDeviceSays) {
  for (const ShownRow& row : kRows) {
    SCOPED_TRACE(row.name);
    Rig rig;
    row.setUp(rig);
    const PageSheet sheet(rig);
    EXPECT_EQ(sheet.Text(IDC_PORT_STATE), row.state);
    EXPECT_EQ(sheet.Text(IDC_PORT_MODE), row.mode);
    EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), row.baudRate);
    EXPECT_EQ(sheet.Text(IDC_PORT_DATA_BITS), row.dataBits);
    EXPECT_EQ(sheet.Text(IDC_PORT_PARITY), row.parity);
    EXPECT_EQ(sheet.Text(IDC_PORT_STOP_BITS), row.stopBits);
    EXPECT_EQ(sheet.Text(IDC_PORT_FLOW_CONTROL), row.flowControl);
    EXPECT_EQ(sheet.IsShown(IDC_PORT_DUPLEX), row.duplex != nullptr);
    EXPECT_EQ(sheet.IsShown(IDC_PORT_DUPLEX_LABEL), row.duplex != nullptr);
    if (row.duplex != nullptr) {
      EXPECT_EQ(sheet.Text(IDC_PORT_DUPLEX), row.duplex);
    }
    EXPECT_EQ(sheet.Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), row.ctsBox);
    EXPECT_EQ(sheet.Box(IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL), row.dsrBox);
    EXPECT_THAT(rig.Misuse(), testing::IsEmpty());
  }
}

TEST(PortPageStatus, LabelsComeFromTheStringTable) {
  Rig rig;
  const PageSheet sheet(rig);
  EXPECT_EQ(sheet.Text(IDC_PORT_STATE_LABEL), L"Serial Port Status:");
  EXPECT_EQ(sheet.Text(IDC_PORT_STOP_BITS_LABEL), L"Stop Bits:");
  EXPECT_EQ(sheet.Text(IDC_PORT_CTS_LABEL), L"&CTS Always True - hardware state ignored:");
  EXPECT_EQ(sheet.Text(IDC_PORT_RESTORE_DEFAULTS), L"Restore &Default");
  EXPECT_EQ(sheet.Text(IDC_PORT_CONFIGURE), L"&Configure Settings...");
}

TEST(PortPageStatus, OpeningReadsTwiceAndWritesBothSetsOnce) {
  Rig rig;
  rig.PortSet().SetNumber("Databits", 0);
  SetDevice(rig, {.baudRate = 57600, .parity = 4});
  const ParameterValues portBefore = rig.PortSet();
  const ParameterValues busBefore = rig.BusSet();
  const PageSheet sheet(rig);
  const std::vector<ParameterValues> writes = rig.Driver().Writes();
  ASSERT_EQ(writes.size(), 2u);
  // Kept on purpose: parity into data bits
  EXPECT_THAT(workbench::Differences(portBefore, writes[0]),
              testing::UnorderedElementsAre("Baudrate 9600 -> 57600", "Databits 0 -> 3"));
  EXPECT_THAT(workbench::Differences(busBefore, writes[1]), testing::IsEmpty());
  EXPECT_EQ(rig.Driver().OpenSessions(), 0u);
  EXPECT_EQ(rig.web.Requests().size(), 1u);
}

TEST(PortPageStatus, OfflineIsToldOnceWhenThePageOpens) {
  Rig rig;
  rig.web.Stop();
  const PageSheet sheet(rig);
  ASSERT_EQ(rig.Boxes().size(), 1u);
  EXPECT_EQ(rig.Boxes()[0].text, kOffline);
  EXPECT_EQ(rig.Boxes()[0].caption, L"Warning");
  EXPECT_EQ(rig.Boxes()[0].style, static_cast<UINT>(MB_ICONEXCLAMATION));
  EXPECT_EQ(rig.Boxes()[0].owner, sheet.Page());
}

TEST(PortPageStatus, BackgroundIsTheProductsOwn) {
  Rig rig;
  const PageSheet sheet(rig);
  for (const UINT message : {WM_CTLCOLORDLG, WM_CTLCOLORSTATIC}) {
    const HDC context = GetDC(sheet.Page());
    SetBkMode(context, OPAQUE);
    const LRESULT brush = SendMessageW(sheet.Page(), message, reinterpret_cast<WPARAM>(context),
                                       reinterpret_cast<LPARAM>(sheet.Control(IDC_PORT_STATE)));
    LOGBRUSH properties{};
    ASSERT_NE(GetObjectW(reinterpret_cast<HGDIOBJ>(brush), sizeof(properties), &properties), 0);
    EXPECT_EQ(properties.lbColor, 0xF6F7F8u);
    EXPECT_EQ(GetBkMode(context), TRANSPARENT);
    ReleaseDC(sheet.Page(), context);
  }
}

}  // namespace
