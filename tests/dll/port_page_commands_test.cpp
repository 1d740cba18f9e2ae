// The buttons, the timer and the tips of the port page.
#include "page_test.h"

#include <commctrl.h>

namespace {

class PortPageCommands : public PageTest {
 protected:
  // The tip window that the page has made.
  [[nodiscard]] HWND Balloon() {
    for (const Call& call : machine.Calls().CallsOf("CreateWindowExW")) {
      if (call.Text(1) == TOOLTIPS_CLASSW) return reinterpret_cast<HWND>(call.result);
    }
    return nullptr;
  }
};

TEST_F(PortPageCommands, ConfigureOpensTheWebPageAndWatchesTheDevice) {
  BusSet().SetNumber("SerialPortIndex", 2);
  PageOf().Click(IDC_PORT_CONFIGURE);
  ASSERT_EQ(machine.Screen().shellCalls.size(), 1u);
  const workbench::ShellRecord& shell = machine.Screen().shellCalls[0];
  EXPECT_EQ(shell.operation, L"open");
  EXPECT_EQ(shell.file, L"http://127.0.0.1:" + std::to_wstring(web.Port()) + L"/serialport2.html");
  EXPECT_EQ(shell.show, SW_SHOWNORMAL);
  const std::vector<Call> timers = machine.Calls().CallsOf("SetTimer");
  ASSERT_EQ(timers.size(), 1u);
  EXPECT_EQ(timers[0].Number(1), 1u);
  EXPECT_EQ(timers[0].Number(2), 5000u);
}

TEST_F(PortPageCommands, ATickRefreshesAndACloseMessageEndsTheTimerBothSilently) {
  PageOf().Click(IDC_PORT_CONFIGURE);
  web.SetPort(1, {.baudRate = 4800});
  Tick();
  EXPECT_EQ(PageOf().Text(IDC_PORT_BAUD_RATE), L"4800");
  web.Stop();
  SendMessageW(PageOf().Page(), WM_CLOSE, 0, 0);
  EXPECT_EQ(machine.Calls().CountOf("KillTimer"), 1u);
  EXPECT_EQ(PageOf().Text(IDC_PORT_STATE), L"Offline");
  EXPECT_EQ(PageOf().Text(IDC_PORT_BAUD_RATE), L"4800") << "the driver has the last one";
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_TRUE(IsWindow(PageOf().Page())) << "the message goes no further";
}

TEST_F(PortPageCommands, RestoreReadsDriverAndDeviceAgain) {
  PageOf();
  web.SetPort(1, {.parity = std::nullopt, .state = 1});
  PortSet().SetNumber("Parity", 4);
  PortSet().SetNumber("EmulateCTSTrue", 1);
  PageOf().Check(IDC_PORT_DSR_ALWAYS_TRUE, true);
  PageOf().Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(PageOf().Text(IDC_PORT_STATE), L"Connected");
  EXPECT_EQ(PageOf().Text(IDC_PORT_PARITY), L"Space");
  EXPECT_EQ(PageOf().Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "checked");
  EXPECT_EQ(PageOf().Box(IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL), "clear") << "not applied, so dropped";
}

// A box that a refresh disables while it has the focus would leave the keyboard without a target.
TEST_F(PortPageCommands, TheFocusGoesOnFromABoxThatIsDisabled) {
  SetFocus(PageOf().Control(IDC_PORT_CTS_ALWAYS_TRUE));
  web.SetPort(1, {.ctsLine = 0});
  Tick();
  ASSERT_FALSE(IsWindowEnabled(PageOf().Control(IDC_PORT_CTS_ALWAYS_TRUE)));
  EXPECT_NE(GetFocus(), nullptr);
  EXPECT_EQ(GetFocus(),
            GetNextDlgTabItem(PageOf().Page(), PageOf().Control(IDC_PORT_CTS_ALWAYS_TRUE), FALSE));
}

TEST_F(PortPageCommands, TheBalloonWaitsASecondAndGoesWithThePage) {
  PageOf();
  const HWND tip = Balloon();
  EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_INITIAL, 0), 1000);
  EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_RESHOW, 0), 2000);
  EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 30000);
  ClosePage();
  EXPECT_FALSE(IsWindow(tip));
}

// The mouse over a static label: the baud rate has no tip, the data bits have one.
TEST_F(PortPageCommands, TheBalloonAppearsOverALabelThatHasATip) {
  const PageSheet& sheet = PageOf();
  const HWND tip = Balloon();
  SendMessageW(tip, TTM_SETDELAYTIME, TTDT_INITIAL, 1);
  for (const auto& [label, shows] :
       {std::pair{IDC_PORT_BAUD_RATE_LABEL, false}, {IDC_PORT_DATA_BITS_LABEL, true}}) {
    RECT place;
    GetWindowRect(sheet.Control(label), &place);
    SetCursorPos(place.left + 3, (place.top + place.bottom) / 2);
    for (int wait = 0; wait < (shows ? 50 : 3) && !IsWindowVisible(tip); ++wait) PumpMessages(100);
    EXPECT_EQ(IsWindowVisible(tip) != FALSE, shows) << label;
  }
}

}  // namespace
