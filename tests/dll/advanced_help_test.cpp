// Help, tips and the hyperlink of the advanced sheet's pages.
#include <cwchar>

#include "advanced_test.h"
#include "base/resource_ids.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr UINT kDisplayTopic = 0x0000;
constexpr UINT kPopUp = 0x0011;
constexpr wchar_t kColourKey[] = L"Software\\Microsoft\\Internet Explorer\\Settings";

class AdvancedHelp : public AdvancedTest {
 protected:
  [[nodiscard]] std::vector<workbench::HelpRecord>& HelpCalls() { return machine.Screen().helpCalls; }
  [[nodiscard]] std::vector<std::wstring> Topics() {
    std::vector<std::wstring> topics;
    for (const workbench::HelpRecord& record : HelpCalls()) topics.push_back(record.topic);
    return topics;
  }
  void ClickHelpOf(std::initializer_list<int> tabs) {
    Run([&](const OpenSheet& sheet) {
      for (const int tab : tabs) Click(sheet.Turn(tab), IDC_DEVICE_HELP_LINK);
    });
  }
};

// The device page goes by the bus's PortType, the TCP/IP page by the port's.
TEST_F(AdvancedHelp, EachTopicGoesByItsOwnPortType) {
  BusSet().SetNumber("PortType", 1);
  ClickHelpOf({OpenSheet::kDevice, OpenSheet::kTcpIp});
  BusSet().SetNumber("PortType", ~1u);
  PortSet().SetNumber("PortType", 1);
  ClickHelpOf({OpenSheet::kDevice, OpenSheet::kTcpIp});
  EXPECT_THAT(Topics(),
              ElementsAre(L"KdNUI41.chm::/AdvDevice485.htm>mainwin", L"KdNUI41.chm::/TcpIpPage.htm>mainwin",
                          L"KdNUI41.chm::/AdvDevice.htm>mainwin", L"KdNUI41.chm::/TcpIpPage485.htm>mainwin"));
  for (const auto& record : HelpCalls()) {
    EXPECT_EQ(record.command, kDisplayTopic);
    EXPECT_NE(record.owner, nullptr);
  }
}

TEST_F(AdvancedHelp, ControlsOfTheTablesHaveAPopUp) {
  Run([&](const OpenSheet& sheet) {
    const HWND device = sheet.Turn(OpenSheet::kDevice);
    AskForHelp(device, IDC_DEVICE_CONNECT_OFFLINE);
    AskForHelp(device, IDC_DEVICE_COM_NUMBER_LABEL);  // not in the table
    ASSERT_EQ(HelpCalls().size(), 1u);
    EXPECT_EQ(HelpCalls()[0].owner, GetDlgItem(device, IDC_DEVICE_CONNECT_OFFLINE));
    AskForHelp(sheet.Turn(OpenSheet::kTcpIp), IDC_TCPIP_VERIFICATION);
  });
  ASSERT_EQ(HelpCalls().size(), 2u);
  EXPECT_EQ(HelpCalls()[0].command, kPopUp);
  EXPECT_EQ(HelpCalls()[0].topic, L"KdNUI41.chm::/KdUUI.txt");
  EXPECT_THAT(HelpCalls()[0].ids,
              ElementsAre(200u, 0x807300CAu, 290u, 0x806B035Cu, 9000u, 0x806B035Fu, 0u, 0u));
  EXPECT_THAT(HelpCalls()[1].ids,
              ElementsAre(289u, 0x806B0357u, 283u, 0x806B0358u, 237u, 0x806B0359u, 239u, 0x806B035Au, 240u,
                          0x806B035Bu, 892u, 0x806B037Cu, 288u, 0x806B035Du, 0u, 0u));
}

TEST_F(AdvancedHelp, WithoutHtmlHelpClicksDoNothingAndItIsLookedForOnce) {
  machine.Screen().htmlHelpInstalled = false;
  ClickHelpOf({OpenSheet::kDevice});
  const auto attempts = [&] {
    std::size_t count = machine.Calls().CountOf("LoadLibraryExA");
    for (const auto& load : machine.Calls().CallsOf("LoadLibraryExW"))
      count += load.Text(0).ends_with(L"hhctrl.ocx");
    return count;
  };
  EXPECT_EQ(attempts(), 2u) << "the registered control, then the one of the system directory";
  machine.Screen().htmlHelpInstalled = true;
  ClickHelpOf({OpenSheet::kDevice, OpenSheet::kTcpIp});
  EXPECT_EQ(attempts(), 2u);
  EXPECT_THAT(HelpCalls(), IsEmpty());
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(AdvancedHelp, AnUnregisteredControlIsFoundByItsName) {
  RegDeleteTreeW(HKEY_CLASSES_ROOT, L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}");
  ClickHelpOf({OpenSheet::kDevice});
  EXPECT_THAT(Topics(), ElementsAre(L"KdNUI41.chm::/AdvDevice.htm>mainwin"));
}

// "": no tip. The TCP/IP page asks for tips of two controls, and the string table has none for them.
TEST_F(AdvancedHelp, OnlyTheListOfComNumbersHasATip) {
  struct Row {
    int tab, control;
    const wchar_t* tip;
  };
  const Row rows[] = {
      {OpenSheet::kDevice, IDC_DEVICE_COM_NUMBER,
       L"Change selection to use a different COM number for this port."},
      {OpenSheet::kDevice, IDC_DEVICE_COM_NUMBER_LABEL, L""},
      {OpenSheet::kDevice, IDC_DEVICE_HIGH_PERFORMANCE, L""},
      {OpenSheet::kTcpIp, IDC_TCPIP_ADDRESS, L""},
      {OpenSheet::kTcpIp, IDC_TCPIP_PORT_NUMBER, L""},
      {OpenSheet::kTcpIp, IDC_TCPIP_RESTORE_DEFAULTS, L""},
  };
  Run([&](const OpenSheet& sheet) {
    for (const Row& row : rows) {
      const HWND page = sheet.Turn(row.tab);
      EXPECT_EQ(TipOf(page, GetDlgItem(page, row.control)), row.tip) << row.control;
    }
  });
}

// The corners of the help picture show what each page has behind its labels; its middle shows the picture.
TEST_F(AdvancedHelp, ThePictureStandsOnThePagesOwnBackground) {
  Run([](const OpenSheet& sheet) {
    for (const int tab : {OpenSheet::kDevice, OpenSheet::kTcpIp}) {
      SCOPED_TRACE(tab);
      const HWND page = sheet.Turn(tab);
      const HWND picture = GetDlgItem(page, IDC_DEVICE_HELP_LINK);
      RECT area;
      GetClientRect(picture, &area);
      const HDC context = GetDC(picture);
      const auto wParam = reinterpret_cast<WPARAM>(context);
      const LRESULT brush = SendMessageW(page, WM_CTLCOLORSTATIC, wParam, reinterpret_cast<LPARAM>(picture));
      FillRect(context, &area, reinterpret_cast<HBRUSH>(brush));
      const COLORREF background = GetPixel(context, 0, 0);
      FillRect(context, &area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
      SendMessageW(picture, WM_PRINTCLIENT, wParam, PRF_CLIENT);
      EXPECT_EQ(GetPixel(context, 0, 0), background);
      EXPECT_EQ(GetPixel(context, area.right - 1, area.bottom - 1), background);
      EXPECT_EQ(GetPixel(context, area.right / 4, area.bottom / 2), RGB(0x2F, 0x7C, 0xC0));
      ReleaseDC(picture, context);
    }
  });
}

class AdvancedAbout : public AdvancedTest {
 protected:
  void SetColour(const wchar_t* name, const wchar_t* text) {
    RegSetKeyValueW(HKEY_CURRENT_USER, kColourKey, name, REG_SZ, text,
                    static_cast<DWORD>((std::wcslen(text) + 1) * sizeof(wchar_t)));
  }
  [[nodiscard]] static bool HasHandAt(HWND control, int x) {
    POINT point{x, 2};
    ClientToScreen(control, &point);
    SetCursorPos(point.x, point.y);
    SetCursor(nullptr);
    SendMessageW(control, WM_SETCURSOR, reinterpret_cast<WPARAM>(control),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor() == LoadCursorW(nullptr, IDC_HAND);
  }
  // Whether a control draws anything in a colour.
  [[nodiscard]] static bool Draws(HWND control, COLORREF colour) {
    RECT area;
    GetClientRect(control, &area);
    const HDC screen = GetDC(nullptr);
    const HDC context = CreateCompatibleDC(screen);
    const HBITMAP picture = CreateCompatibleBitmap(screen, area.right, area.bottom);
    const HGDIOBJ before = SelectObject(context, picture);
    SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(context), PRF_CLIENT);
    bool found = false;
    for (int y = 0; y < area.bottom && !found; ++y) {
      for (int x = 0; x < area.right && !found; ++x) found = GetPixel(context, x, y) == colour;
    }
    SelectObject(context, before);
    DeleteObject(picture);
    DeleteDC(context);
    ReleaseDC(nullptr, screen);
    return found;
  }
};

TEST_F(AdvancedAbout, TheLinkOpensTheMakersSite) {
  Run([this](const OpenSheet& sheet) {
    const HWND page = sheet.Turn(OpenSheet::kAbout);
    const HWND link = GetDlgItem(page, IDC_ABOUT_WEBSITE);
    EXPECT_TRUE(GetWindowLongW(link, GWL_STYLE) & SS_NOTIFY);
    EXPECT_TRUE(Draws(link, 0xFF0000)) << "blue before the first click";
    Click(page, IDC_ABOUT_WEBSITE);
    EXPECT_TRUE(Draws(link, 0x800080)) << "purple after it";
    SendMessageW(link, WM_CHAR, VK_RETURN, 0);
    SendMessageW(link, WM_CHAR, VK_SPACE, 0);
    SendMessageW(link, WM_CHAR, 'x', 0);
    SendMessageW(link, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
    SendMessageW(link, WM_LBUTTONUP, 0, MAKELPARAM(-5, 500));  // let go elsewhere
    EXPECT_TRUE(HasHandAt(link, 2));
    SetWindowTextW(link, L"i");
    SendMessageW(link, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(40, 2));  // beyond the shorter text
    SendMessageW(link, WM_LBUTTONUP, 0, MAKELPARAM(40, 2));
    EXPECT_FALSE(HasHandAt(link, 40));
  });
  for (const workbench::Call& call : machine.Calls().CallsOf("DestroyWindow")) {
    EXPECT_TRUE(call.succeeded) << "a tip goes with its sheet, and its number may be another window's then";
  }
  ASSERT_EQ(machine.Screen().shellCalls.size(), 3u);
  const workbench::ShellRecord& call = machine.Screen().shellCalls[0];
  EXPECT_EQ(call.owner, nullptr);
  EXPECT_EQ(call.operation, L"open");
  EXPECT_EQ(call.file, L"https://www.keldrin.example/");
  EXPECT_EQ(call.parameters, L"");
  EXPECT_EQ(call.show, SW_SHOWNORMAL);
}

TEST_F(AdvancedAbout, TheUsersColoursCountWhenTheyCanBeRead) {
  struct Row {
    const wchar_t *anchor, *visited;
    COLORREF colour, visitedColour;
  };
  const Row rows[] = {{L"0,128,0", L"128,64,0", RGB(0, 128, 0), RGB(128, 64, 0)},
                      {L"green", L"1,2", 0xFF0000, 0x800080},
                      {L"0,0,256", L"", 0xFF0000, 0x800080}};
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.anchor));
    SetColour(L"Anchor Color", row.anchor);
    SetColour(L"Anchor Color Visited", row.visited);
    Run([&](const OpenSheet& sheet) {
      const HWND page = sheet.Turn(OpenSheet::kAbout);
      EXPECT_TRUE(Draws(GetDlgItem(page, IDC_ABOUT_WEBSITE), row.colour));
      Click(page, IDC_ABOUT_WEBSITE);
      EXPECT_TRUE(Draws(GetDlgItem(page, IDC_ABOUT_WEBSITE), row.visitedColour));
    });
  }
}

// Enter on the link opens it and does not press OK; the keyboard reaches it.
TEST_F(AdvancedAbout, TheLinkIsForTheKeyboardToo) {
  Run([](const OpenSheet& sheet) {
    const HWND page = sheet.Turn(OpenSheet::kAbout);
    const HWND link = GetDlgItem(page, IDC_ABOUT_WEBSITE);
    EXPECT_EQ(GetNextDlgTabItem(page, nullptr, FALSE), link);
    MSG enter{};
    enter.hwnd = link;
    enter.message = WM_KEYDOWN;
    enter.wParam = VK_RETURN;
    EXPECT_TRUE(SendMessageW(link, WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&enter)) &
                DLGC_WANTMESSAGE);
    enter.wParam = VK_ESCAPE;
    EXPECT_FALSE(SendMessageW(link, WM_GETDLGCODE, VK_ESCAPE, reinterpret_cast<LPARAM>(&enter)) &
                 DLGC_WANTMESSAGE);
  });
}

}  // namespace
