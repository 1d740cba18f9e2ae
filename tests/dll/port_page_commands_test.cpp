// The buttons, the timer, tips and help of the port page.
#include "rig_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "base/resource_ids.h"

namespace {

TEST(PortPageCommands, ConfigureOpensTheWebPageAndWatchesTheDevice) {
  Rig rig;
  rig.BusSet().SetNumber("SerialPortIndex", 2);
  const PageSheet sheet(rig);
  sheet.Click(IDC_PORT_CONFIGURE);
  ASSERT_EQ(rig.machine.Screen().shellCalls.size(), 1u);
  const workbench::ShellRecord& call = rig.machine.Screen().shellCalls[0];
  EXPECT_EQ(call.operation, L"open");
  EXPECT_EQ(call.file, L"http://127.0.0.1:" + std::to_wstring(rig.web.Port()) + L"/serialport2.html");
  EXPECT_EQ(call.show, SW_SHOWNORMAL);
  const std::vector<workbench::Call> timers = rig.machine.Calls().CallsOf("SetTimer");
  ASSERT_EQ(timers.size(), 1u);
  EXPECT_EQ(timers[0].Number(1), 1u);
  EXPECT_EQ(timers[0].Number(2), 5000u);
}

TEST(PortPageCommands, TickShowsWhatChangedAndIsSilent) {
  Rig rig;
  const PageSheet sheet(rig);
  rig.web.SetPort(1, {.baudRate = 4800});
  SendMessageW(sheet.Page(), WM_TIMER, 1, 0);
  EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), L"4800");
  rig.web.Stop();
  SendMessageW(sheet.Page(), WM_TIMER, 1, 0);
  EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Offline");
  EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), L"4800") << "the driver has the last one";
  EXPECT_THAT(rig.Boxes(), testing::IsEmpty());
}

TEST(PortPageCommands, CloseMessageStopsTheTimerAndRefreshesSilently) {
  Rig rig;
  const PageSheet sheet(rig);
  sheet.Click(IDC_PORT_CONFIGURE);
  rig.web.Stop();
  SendMessageW(sheet.Page(), WM_CLOSE, 0, 0);
  EXPECT_EQ(rig.machine.Calls().CountOf("KillTimer"), 1u);
  EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Offline");
  EXPECT_THAT(rig.Boxes(), testing::IsEmpty());
  EXPECT_TRUE(IsWindow(sheet.Page())) << "the message goes no further";
}

TEST(PortPageCommands, RestoreRereadsDriverAndDevice) {
  Rig rig;
  const PageSheet sheet(rig);
  rig.web.SetPort(1, {.parity = std::nullopt, .state = 1});
  rig.PortSet().SetNumber("Parity", 4);
  rig.PortSet().SetNumber("EmulateCTSTrue", 1);
  sheet.Check(IDC_PORT_DSR_ALWAYS_TRUE, true);
  sheet.Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Connected");
  EXPECT_EQ(sheet.Text(IDC_PORT_PARITY), L"Space");
  EXPECT_EQ(sheet.Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "checked");
  EXPECT_EQ(sheet.Box(IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL), "clear") << "not applied, so dropped";
}

// A box that a refresh disables while it has the focus would leave the keyboard without a target.
TEST(PortPageCommands, FocusLeavesABoxThatIsDisabled) {
  Rig rig;
  const PageSheet sheet(rig);
  SetFocus(sheet.Control(IDC_PORT_CTS_ALWAYS_TRUE));
  rig.web.SetPort(1, {.ctsLine = 0});
  SendMessageW(sheet.Page(), WM_TIMER, 1, 0);
  ASSERT_FALSE(IsWindowEnabled(sheet.Control(IDC_PORT_CTS_ALWAYS_TRUE)));
  EXPECT_TRUE(GetFocus() != nullptr && IsWindowEnabled(GetFocus()));
}

TEST(PortPageCommands, TipsFollowTheTable) {
  Rig rig;
  const PageSheet sheet(rig);
  for (const auto& [label, value] : {std::pair{223, 297}, {224, 298}, {225, 299}, {226, 300}}) {
    EXPECT_NE(TipOf(sheet.Page(), sheet.Control(label)), L"") << label;
    EXPECT_EQ(TipOf(sheet.Page(), sheet.Control(label)), TipOf(sheet.Page(), sheet.Control(value))) << label;
  }
  EXPECT_NE(TipOf(sheet.Page(), sheet.Control(840)), L"");
  EXPECT_NE(TipOf(sheet.Page(), sheet.Control(892)), TipOf(sheet.Page(), sheet.Control(840)));
  for (const int quiet : {222, 296, 294, 841, 211})
    EXPECT_EQ(TipOf(sheet.Page(), sheet.Control(quiet)), L"") << quiet;
  EXPECT_EQ(TipOf(sheet.Page(), sheet.Page()), L"");
}

// The tip window of a page, which has a tool for the page itself.
HWND BalloonOf(const PageSheet& sheet) {
  struct Search {
    HWND page, found;
  } search{sheet.Page(), nullptr};
  const auto look = [](HWND window, LPARAM to) -> BOOL {
    auto& [page, found] = *reinterpret_cast<Search*>(to);
    wchar_t name[64];
    GetClassNameW(window, name, ARRAYSIZE(name));
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof(tool);
    tool.hwnd = page;
    tool.uId = reinterpret_cast<UINT_PTR>(page);
    const bool balloon = lstrcmpiW(name, TOOLTIPS_CLASSW) == 0 &&
                         SendMessageW(window, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool)) != 0;
    if (balloon) found = window;
    return TRUE;
  };
  EnumThreadWindows(GetCurrentThreadId(), look, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

TEST(PortPageCommands, BalloonHasOneToolPerChild) {
  Rig rig;
  HWND tip = nullptr;
  {
    const PageSheet sheet(rig);
    tip = BalloonOf(sheet);
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(GetWindowLongW(tip, GWL_STYLE) & 0xFF, 195);
    EXPECT_EQ(SendMessageW(tip, TTM_GETMAXTIPWIDTH, 0, 0), 400);
    EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_INITIAL, 0), 1000);
    EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_RESHOW, 0), 2000);
    EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 30000);
    for (HWND child = GetWindow(sheet.Page(), GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
      TTTOOLINFOW tool{};
      tool.cbSize = sizeof(tool);
      tool.hwnd = sheet.Page();
      tool.uId = reinterpret_cast<UINT_PTR>(child);
      EXPECT_TRUE(SendMessageW(tip, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool)));
      EXPECT_EQ(tool.uFlags & 0xFF, 17u) << GetDlgCtrlID(child);
    }
  }
  EXPECT_FALSE(IsWindow(tip));
}

// The mouse over a static label: the baud rate has no tip, the data bits have one.
TEST(PortPageCommands, BalloonAppearsOverALabel) {
  Rig rig;
  const PageSheet sheet(rig);
  const HWND tip = BalloonOf(sheet);
  ASSERT_NE(tip, nullptr);
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

// What a click does, Enter and Space do; Enter does not press OK. The link shows the focus and has a name.
TEST(PortPageCommands, HelpLinkIsForTheKeyboardToo) {
  Rig rig;
  const PageSheet sheet(rig);
  const HWND link = sheet.Control(IDC_PORT_HELP_LINK);
  EXPECT_EQ(sheet.Text(IDC_PORT_HELP_LINK), L"Need More &Help? Click:");
  const auto topRow = [&] {
    RedrawWindow(link, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    const HDC context = GetDC(link);
    std::vector<COLORREF> row;
    for (int x = 0; x < 12; ++x) row.push_back(GetPixel(context, x, 0));
    ReleaseDC(link, context);
    return row;
  };
  const std::vector<COLORREF> without = topRow();
  SetFocus(link);
  EXPECT_NE(topRow(), without);
  for (const int key : {VK_RETURN, VK_SPACE, static_cast<int>('x')}) {
    SendMessageW(link, WM_CHAR, static_cast<WPARAM>(key), 0);
  }
  EXPECT_EQ(rig.machine.Screen().helpCalls.size(), 2u);
  MSG enter{};
  enter.message = WM_KEYDOWN;
  enter.wParam = VK_RETURN;
  EXPECT_TRUE(SendMessageW(link, WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&enter)) &
              DLGC_WANTMESSAGE);
  SetFocus(sheet.Control(IDC_PORT_ADVANCED));
  EXPECT_EQ(topRow(), without);
}

TEST(PortPageCommands, HelpTopicFollowsThePortSet) {
  for (const bool rs422485 : {false, true}) {
    Rig rig;
    rig.web.SetPort(1, {.portMode = std::nullopt});
    rig.BusSet().SetNumber("SerialPortIndex", 2);
    rig.PortSet().SetNumber("PortType", rs422485 ? 2 : 0);
    rig.BusSet().SetNumber("PortType", rs422485 ? 0 : 1);
    const PageSheet sheet(rig);
    SendMessageW(sheet.Page(), WM_COMMAND, MAKEWPARAM(IDC_PORT_HELP_LINK, STN_CLICKED),
                 reinterpret_cast<LPARAM>(sheet.Control(IDC_PORT_HELP_LINK)));
    ASSERT_EQ(rig.machine.Screen().helpCalls.size(), 1u);
    EXPECT_EQ(rig.machine.Screen().helpCalls[0].topic,
              rs422485 ? L"KdNUI41.chm::/StdPage485.htm>mainwin" : L"KdNUI41.chm::/StdPage.htm>mainwin");
    EXPECT_EQ(rig.machine.Screen().helpCalls[0].command, 0u);
    EXPECT_EQ(rig.machine.Screen().helpCalls[0].owner, sheet.Page());
  }
}

TEST(PortPageCommands, ContextHelpIsForTheControlsOfTheTable) {
  Rig rig;
  const PageSheet sheet(rig);
  AskForHelp(sheet.Page(), IDC_PORT_BAUD_RATE);
  AskForHelp(sheet.Page(), IDC_PORT_ADVANCED, HELPINFO_MENUITEM);
  EXPECT_THAT(rig.machine.Screen().helpCalls, testing::IsEmpty());
  AskForHelp(sheet.Page(), IDC_PORT_CTS_LABEL);
  ASSERT_EQ(rig.machine.Screen().helpCalls.size(), 1u);
  const workbench::HelpRecord& call = rig.machine.Screen().helpCalls[0];
  EXPECT_EQ(call.owner, sheet.Control(IDC_PORT_CTS_LABEL));
  EXPECT_EQ(call.topic, L"KdNUI41.chm::/KdUUI.txt");
  EXPECT_EQ(call.command, 0x11u);
  EXPECT_THAT(call.ids,
              testing::ElementsAre(211, 0x806B00D3, 227, 0x806B00D3, 205, 0x806B00CD, 228, 0x806B00CD, 892,
                                   0x806B037C, 840, 0x806B0348, 841, 0x806B035E, 0, 0));
}

}  // namespace
