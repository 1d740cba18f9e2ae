// What the port page shows and writes when it opens: live values, fall-backs, and the rows and boxes of each
// kind of port.
#include "page_test.h"

namespace {

using workbench::PortState;

class PortPageStatus : public PageTest {};

struct Shown {
  const wchar_t* state = L"Idle";
  const wchar_t* mode = L"RS232";
  const wchar_t* baudRate = L"9600";
  const wchar_t* dataBits = L"8";
  const wchar_t* parity = L"None";
  const wchar_t* stopBits = L"1";
  const wchar_t* flowControl = L"None";
  const wchar_t* duplex = nullptr;  // null: the row is hidden
  const char* ctsBox = "clear";
  const char* dsrBox = "clear";
};
constexpr char kLocked[] = "checked, disabled, label disabled";

struct Row {
  const char* name;
  std::optional<PortState> device;  // nothing: the device server is off, in this row and those behind it
  std::vector<std::pair<const char*, std::uint32_t>> port;
  std::uint32_t portTypeOfBus;
  Shown shown;
};

const Row kRows[] = {
    {"everything different from the driver",
     PortState{.baudRate = 115200,
               .dataBits = 7,
               .parity = 3,
               .stopBits = 3,
               .flowControl = 4,
               .state = 1,
               .portMode = 2},
     {{"EmulateCTSTrue", 1}, {"EmulateDSRTrue", 7}},
     0,
     {.state = L"Connected",
      .mode = L"RS232/422/485",
      .baudRate = L"115200",
      .dataBits = L"7",
      .parity = L"Even",
      .stopBits = L"1.5",
      .flowControl = L"Xon/Xoff",
      .ctsBox = "checked",
      .dsrBox = "checked"}},
    {"RS-485: neither DSR nor CTS",
     PortState{.duplex = 2, .portMode = 1},
     {{"PortType", 1}},
     1,
     {.mode = L"RS422/485",
      .duplex = L"RS485 half-duplex autogating mode",
      .ctsBox = kLocked,
      .dsrBox = kLocked}},
    {"the device server is off: the driver's values",
     std::nullopt,
     {{"Baudrate", 19200}, {"Databits", 2}, {"Parity", 1}, {"Stopbits", 2}, {"FlowControl", 2}},
     0,
     {.state = L"Offline",
      .baudRate = L"19200",
      .dataBits = L"7",
      .parity = L"Odd",
      .stopBits = L"2",
      .flowControl = L"DTR/DSR"}},
};

TEST_F(PortPageStatus, APageShowsTheDeviceAndWhereItIsSilentTheDriver) {
  const workbench::ParameterValues port = PortSet();
  const workbench::ParameterValues bus = BusSet();
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    PortSet() = port;
    BusSet() = bus;
    for (const auto& [name, value] : row.port) PortSet().SetNumber(name, value);
    BusSet().SetNumber("PortType", row.portTypeOfBus);
    if (row.device) web.SetPort(1, *row.device);
    if (!row.device) web.Stop();
    const PageSheet sheet(*this);
    const std::pair<int, const wchar_t*> texts[] = {{IDC_PORT_STATE, row.shown.state},
                                                    {IDC_PORT_MODE, row.shown.mode},
                                                    {IDC_PORT_BAUD_RATE, row.shown.baudRate},
                                                    {IDC_PORT_DATA_BITS, row.shown.dataBits},
                                                    {IDC_PORT_PARITY, row.shown.parity},
                                                    {IDC_PORT_STOP_BITS, row.shown.stopBits},
                                                    {IDC_PORT_FLOW_CONTROL, row.shown.flowControl}};
    for (const auto& [control, text] : texts) EXPECT_EQ(sheet.Text(control), text);
    for (const int control : {IDC_PORT_DUPLEX, IDC_PORT_DUPLEX_LABEL}) {
      EXPECT_EQ(sheet.IsShown(control), row.shown.duplex != nullptr);
    }
    if (row.shown.duplex != nullptr) {
      EXPECT_EQ(sheet.Text(IDC_PORT_DUPLEX), row.shown.duplex);
    }
    EXPECT_EQ(sheet.Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), row.shown.ctsBox);
    EXPECT_EQ(sheet.Box(IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL), row.shown.dsrBox);
  }
}

TEST_F(PortPageStatus, LabelsComeFromTheStringTable) {
  const std::pair<int, const wchar_t*> labels[] = {
      {IDC_PORT_STATE_LABEL, L"Serial Port Status:"},
      {IDC_PORT_STOP_BITS_LABEL, L"Stop Bits:"},
      {IDC_PORT_CTS_LABEL, L"&CTS Always True - hardware state ignored:"},
      {IDC_PORT_RESTORE_DEFAULTS, L"Restore &Default"},
      {IDC_PORT_CONFIGURE, L"&Configure Settings..."},
      {IDC_PORT_HELP_LINK, L"Need More &Help? Click:"}};
  for (const auto& [control, text] : labels) EXPECT_EQ(PageOf().Text(control), text);
}

TEST_F(PortPageStatus, OpeningReadsTheDeviceOnceAndWritesBothSets) {
  PortSet().SetNumber("Databits", 0);
  web.SetPort(1, {.baudRate = 57600, .parity = 4});
  NoteSets();
  const PageSheet sheet(*this);
  // Kept on purpose: parity into data bits
  EXPECT_THAT(Written(), ElementsAre("Baudrate 9600 -> 57600, Databits 0 -> 3", ""));
  EXPECT_EQ(Driver().Writes().back().Selector(), kBusSet);
  EXPECT_EQ(web.Requests().size(), 1u);
}

TEST_F(PortPageStatus, AnOfflineDeviceIsReportedWhenThePageOpens) {
  web.Stop();
  const PageSheet sheet(*this);
  EXPECT_THAT(BoxTexts(), ElementsAre(L"Cannot load device information data from the device. Device may be "
                                      L"offline.|Warning|48"));
  EXPECT_EQ(Boxes().at(0).owner, sheet.Page());
}

TEST_F(PortPageStatus, PageAndLabelsHaveTheProductsBackground) {
  const HWND page = PageOf().Page();
  for (const UINT message : {WM_CTLCOLORDLG, WM_CTLCOLORSTATIC}) {
    const HDC context = GetDC(page);
    SetBkMode(context, OPAQUE);
    const LRESULT brush = SendMessageW(page, message, reinterpret_cast<WPARAM>(context),
                                       reinterpret_cast<LPARAM>(PageOf().Control(IDC_PORT_STATE)));
    LOGBRUSH properties{};
    ASSERT_NE(GetObjectW(reinterpret_cast<HGDIOBJ>(brush), sizeof(properties), &properties), 0);
    EXPECT_EQ(properties.lbColor, 0xF6F7F8u);
    EXPECT_EQ(GetBkMode(context), TRANSPARENT);
    ReleaseDC(page, context);
  }
}

}  // namespace
