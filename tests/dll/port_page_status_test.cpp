// What the port page shows and writes when it opens: live values, fall-backs, and the rows and boxes of each
// kind of port.
#include "page_test.h"

namespace {

class PortPageStatus : public PageTest {
 protected:
  // From the state down to the flow control.
  static std::vector<std::wstring> TextsOf(const PageSheet& sheet) {
    std::vector<std::wstring> texts;
    for (const int control : {IDC_PORT_STATE, IDC_PORT_MODE, IDC_PORT_BAUD_RATE, IDC_PORT_DATA_BITS,
                              IDC_PORT_PARITY, IDC_PORT_STOP_BITS, IDC_PORT_FLOW_CONTROL}) {
      texts.push_back(sheet.Text(control));
    }
    return texts;
  }
};

TEST_F(PortPageStatus, APageShowsTheDevicesValuesAndTheDriversBoxes) {
  web.SetPort(1, {.baudRate = 115200,
                  .dataBits = 7,
                  .parity = 3,
                  .stopBits = 3,
                  .flowControl = 4,
                  .state = 1,
                  .portMode = 2});
  PortSet().SetNumber("EmulateCTSTrue", 1);
  EXPECT_THAT(TextsOf(PageOf()),
              ElementsAre(L"Connected", L"RS232/422/485", L"115200", L"7", L"Even", L"1.5", L"Xon/Xoff"));
  EXPECT_EQ(PageOf().Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "checked");
  EXPECT_EQ(PageOf().Box(IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL), "clear");
  EXPECT_FALSE(PageOf().IsShown(IDC_PORT_DUPLEX));
  EXPECT_FALSE(PageOf().IsShown(IDC_PORT_DUPLEX_LABEL));
}

TEST_F(PortPageStatus, AnRs485PortHasADuplexModeAndNeitherDsrNorCts) {
  PortSet().SetNumber("PortType", 1);
  BusSet().SetNumber("PortType", 1);
  web.SetPort(1, {.duplex = 2, .portMode = 1});
  EXPECT_EQ(PageOf().Text(IDC_PORT_DUPLEX), L"RS485 half-duplex autogating mode");
  EXPECT_TRUE(PageOf().IsShown(IDC_PORT_DUPLEX));
  EXPECT_TRUE(PageOf().IsShown(IDC_PORT_DUPLEX_LABEL));
  for (const auto& [box, label] : {std::pair{IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL},
                                   {IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL}}) {
    EXPECT_EQ(PageOf().Box(box, label), "checked, disabled, label disabled");
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

TEST_F(PortPageStatus, AnOfflineDeviceIsReportedAndThePageShowsTheDriver) {
  for (const auto& [name, value] : {std::pair{"Baudrate", 19200u},
                                    {"Databits", 2u},
                                    {"Parity", 1u},
                                    {"Stopbits", 2u},
                                    {"FlowControl", 2u}}) {
    PortSet().SetNumber(name, value);
  }
  web.Stop();
  const PageSheet sheet(*this);
  EXPECT_THAT(TextsOf(sheet), ElementsAre(L"Offline", L"RS232", L"19200", L"7", L"Odd", L"2", L"DTR/DSR"));
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
