// The advanced sheet as a whole: its tabs, its caption, the page that is made and not shown, drivers that
// fail.
#include "page_test.h"

namespace {

using testing::HasSubstr;

constexpr int kApplyButton = 0x3021;  // of every property sheet

class AdvancedSheet : public PageTest {
 protected:
  AdvancedSheet() { PageOf(); }
};

TEST_F(AdvancedSheet, HasThreeTabsThePortInItsCaptionAndNoApplyButton) {
  PortSet().SetNumber("PortType", 0xFFFFFFFF);
  Run([](const OpenSheet& sheet) {
    EXPECT_THAT(sheet.Tabs(), ElementsAre(L"Port Settings", L"TCP/IP Settings", L"About"));
    EXPECT_THAT(sheet.Caption(), HasSubstr(L"Advanced Settings for COM7"));
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(sheet.Window(), kApplyButton)));
  });
  machine.Registry().DeleteValue(workbench::ParametersKeyOf(Port().instanceId), L"PortName");
  Run([](const OpenSheet& sheet) { EXPECT_THAT(sheet.Caption(), HasSubstr(L"Advanced Settings for")); });
}

TEST_F(AdvancedSheet, OkCountsAsSavedAlsoWhenNothingWasWritten) {
  EXPECT_EQ(Run([](const OpenSheet& sheet) { sheet.PressOk(); }).result, 1);
  EXPECT_THAT(Written(), IsEmpty());
  EXPECT_EQ(Run([](const OpenSheet& sheet) { sheet.PressCancel(); }).result, 0);
}

// The page that is not shown has read its set when the sheet is made, and the port page goes by that: in
// RS-485 mode there is no CTS, whatever the driver has by then. A driver that does not answer leaves the
// boxes alone.
TEST_F(AdvancedSheet, ASaveTakesTheDuplexModeOfTheHiddenPage) {
  struct Row {
    std::uint32_t atOpening, later;
    const char* box;
    bool readable = true;
  };
  PortSet().SetNumber("PortType", 1);
  for (const Row& row :
       {Row{2, 1, "checked, disabled, label disabled"}, Row{1, 2, "clear"}, Row{2, 2, "clear", false}}) {
    PortSet().SetNumber("DuplexMode", row.atOpening);
    const Outcome outcome = Run([&](const OpenSheet& sheet) {
      PortSet().SetNumber("DuplexMode", row.later);
      if (!row.readable) Driver().Inject({.operation = DriverFault::Operation::Read});
      sheet.PressOk();
    });
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(PageOf().Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), row.box);
    EXPECT_THAT(Written(), IsEmpty());
  }
}

// After a cancel the boxes stay as they are, and the label of the DSR box stays enabled even after a save.
TEST_F(AdvancedSheet, ASaveShowsThatALineIsGone) {
  PortSet().SetNumber("CtsSupported", 0);
  PortSet().SetNumber("DsrSupported", 0);
  Run([](const OpenSheet& sheet) { sheet.PressCancel(); });
  EXPECT_EQ(PageOf().Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "clear");
  Run([](const OpenSheet& sheet) { sheet.PressOk(); });
  EXPECT_EQ(PageOf().Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "checked, disabled, label disabled");
  EXPECT_EQ(PageOf().Box(IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL), "checked, disabled");
}

// Device Manager may take its sheet away under the one that the page has opened.
TEST_F(AdvancedSheet, EndsWithTheSheetOfThePage) {
  Run([this](const OpenSheet&) { DestroyWindow(PageOf().Window()); });
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::DeviceSet), 0u);
}

TEST_F(AdvancedSheet, AnUnreadableDriverLeavesThePagesWithInitialValuesAndWritesNothing) {
  BusSet().SetNumber("RxFifoSize", 1024);
  Driver().Inject({.operation = DriverFault::Operation::Read});
  const Outcome outcome = Run([](const OpenSheet& sheet) {
    const HWND device = sheet.Turn(OpenSheet::kDevice);
    EXPECT_EQ(TextOf(device, IDC_DEVICE_RX_FIFO_SIZE), L"0 bytes");
    Click(device, IDC_DEVICE_CONNECT_OFFLINE);
    EXPECT_EQ(TextOf(sheet.Turn(OpenSheet::kTcpIp), IDC_TCPIP_ADDRESS), L"0.0.0.0");
    sheet.PressOk();
  });
  EXPECT_FALSE(outcome.stayedOpen);
  EXPECT_THAT(Written(), IsEmpty());
}

// What cannot be read is not written, and the sheet closes: a user cannot mend a driver. A new COM number
// needs no driver, but is not given where the set cannot be read.
TEST_F(AdvancedSheet, ADriverThatFailsOnOkWritesNothing) {
  using Operation = DriverFault::Operation;
  struct Row {
    const char* name;
    int tab;
    Operation operation;
    bool staysOpen;
    const wchar_t* portName;
  };
  const Row rows[] = {{"device page, read", OpenSheet::kDevice, Operation::Read, false, L"COM7"},
                      {"device page, write", OpenSheet::kDevice, Operation::Write, false, L"COM20"},
                      {"TCP/IP page, read", OpenSheet::kTcpIp, Operation::Read, false, L"COM20"},
                      {"TCP/IP page, write", OpenSheet::kTcpIp, Operation::Write, true, L"COM20"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const Outcome outcome = Apply(row.tab, [&](HWND page) {
      if (row.tab == OpenSheet::kDevice) {
        Select(page, IDC_DEVICE_COM_NUMBER, L"COM20");
        Click(page, IDC_DEVICE_CONNECT_OFFLINE);
      } else {
        Enter(page, IDC_TCPIP_PORT_NUMBER, L"5000");
      }
      Driver().Inject({.operation = row.operation});
    });
    Driver().ClearFaults();
    EXPECT_EQ(outcome.stayedOpen, row.staysOpen);
    EXPECT_EQ(NameOf(Port()), row.portName);
    EXPECT_THAT(Written(), IsEmpty());
    EXPECT_THAT(Boxes(), IsEmpty());
  }
}

// The device server went away while Device Manager was open.
TEST_F(AdvancedSheet, APortWhoseDeviceServerIsGoneStillHasASheet) {
  server.card->present = false;
  Run([](const OpenSheet& sheet) { EXPECT_THAT(sheet.Tabs(), testing::SizeIs(3)); });
  EXPECT_THAT(Written(), IsEmpty());
}

// Two ports' pages and sheets at once: each has its own values.
TEST_F(AdvancedSheet, TwoPortsShareNothing) {
  PageOf(1);
  Run([&](const OpenSheet& outer) {
    const HWND first = outer.Turn(OpenSheet::kDevice);
    RunOn(1, [&](const OpenSheet& inner) {
      Click(inner.Turn(OpenSheet::kDevice), IDC_DEVICE_CONNECT_OFFLINE);
      inner.PressOk();
    });
    EXPECT_FALSE(IsChecked(first, IDC_DEVICE_CONNECT_OFFLINE));
    EXPECT_EQ(SelectedOf(first, IDC_DEVICE_COM_NUMBER), L"COM7");
  });
  EXPECT_THAT(Driver(1).Writes(), testing::SizeIs(1));
  EXPECT_THAT(Written(), IsEmpty());
}

}  // namespace
