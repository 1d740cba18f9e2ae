// Help, tips and links of the port page and of the advanced sheet's pages.
#include "page_test.h"

#include <algorithm>

namespace {

constexpr UINT kDisplayTopic = 0x0000;
constexpr UINT kPopUp = 0x0011;
constexpr int kPortPage = -1;  // in the place of a tab of the advanced sheet

class PageHelp : public PageTest {
 protected:
  // Calls `visit` with the port page or with a page of its advanced sheet.
  void On(int tab, const std::function<void(HWND)>& visit) {
    if (tab == kPortPage) return visit(PageOf().Page());
    Run([&](const OpenSheet& sheet) { visit(sheet.Turn(tab)); });
  }
  void ClickHelpOf(std::initializer_list<int> tabs) {
    for (const int tab : tabs) On(tab, [](HWND page) { Click(page, IDC_PORT_HELP_LINK); });
  }
  [[nodiscard]] std::vector<workbench::HelpRecord>& HelpCalls() { return machine.Screen().helpCalls; }
  [[nodiscard]] std::vector<std::wstring> Topics() {
    std::vector<std::wstring> topics;
    for (const workbench::HelpRecord& record : HelpCalls()) topics.push_back(record.topic);
    return topics;
  }
};

// The device page goes by the bus's PortType, the port page and the TCP/IP page by the port's.
TEST_F(PageHelp, EachTopicGoesByItsOwnPortType) {
  struct Row {
    std::uint32_t port, bus;
    const wchar_t *portPage, *device, *tcpIp;
  };
  const Row rows[] = {{2, 0, L"StdPage485", L"AdvDevice", L"TcpIpPage485"},
                      {0, 2, L"StdPage", L"AdvDevice485", L"TcpIpPage"}};
  BusSet().SetNumber("SerialPortIndex", 2);
  for (const Row& row : rows) {
    PortSet().SetNumber("PortType", row.port);
    BusSet().SetNumber("PortType", row.bus);
    Tick();
    HelpCalls().clear();
    ClickHelpOf({kPortPage, OpenSheet::kDevice, OpenSheet::kTcpIp});
    const auto topic = [](const wchar_t* name) {
      return L"KdNUI41.chm::/" + std::wstring(name) + L".htm>mainwin";
    };
    EXPECT_THAT(Topics(), ElementsAre(topic(row.portPage), topic(row.device), topic(row.tcpIp)));
    for (const workbench::HelpRecord& record : HelpCalls()) {
      EXPECT_EQ(record.command, kDisplayTopic);
      EXPECT_NE(record.owner, nullptr);
    }
  }
}

TEST_F(PageHelp, OnlyControlsOfThePagesTableHaveAPopUp) {
  struct Row {
    int tab, control, without;
    DWORD topic;
  };
  const Row rows[] = {
      {kPortPage, IDC_PORT_CTS_LABEL, IDC_PORT_BAUD_RATE, 0x806B00D3},
      {OpenSheet::kDevice, IDC_DEVICE_CONNECT_OFFLINE, IDC_DEVICE_COM_NUMBER_LABEL, 0x806B035C},
      {OpenSheet::kTcpIp, IDC_TCPIP_VERIFICATION, IDC_TCPIP_HELP_LINK, 0x806B035D}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.tab);
    HelpCalls().clear();
    On(row.tab, [&](HWND page) {
      AskForHelp(page, row.without);
      AskForHelp(page, row.control, HELPINFO_MENUITEM);
      EXPECT_THAT(HelpCalls(), IsEmpty());
      AskForHelp(page, row.control);
      ASSERT_EQ(HelpCalls().size(), 1u);
      EXPECT_EQ(HelpCalls()[0].owner, GetDlgItem(page, row.control));
      EXPECT_EQ(HelpCalls()[0].command, kPopUp);
      EXPECT_EQ(HelpCalls()[0].topic, L"KdNUI41.chm::/KdUUI.txt");
      const std::vector<DWORD>& ids = HelpCalls()[0].ids;
      const auto id = std::ranges::find(ids, static_cast<DWORD>(row.control));
      ASSERT_NE(id, ids.end());
      EXPECT_EQ(id[1], row.topic);
    });
  }
}

TEST_F(PageHelp, WithoutHtmlHelpClicksDoNothingAndItIsLookedForOnce) {
  machine.Screen().htmlHelpInstalled = false;
  ClickHelpOf({OpenSheet::kDevice});
  const auto attempts = [&] {
    std::size_t count = machine.Calls().CountOf("LoadLibraryExA");
    for (const Call& load : machine.Calls().CallsOf("LoadLibraryExW"))
      count += load.Text(0).ends_with(L"hhctrl.ocx");
    return count;
  };
  EXPECT_EQ(attempts(), 2u) << "the registered control, then the one of the system directory";
  EXPECT_EQ(machine.Calls().CountOf("LoadLibraryExA"), 1u) << "by the registered path, its variable expanded";
  machine.Screen().htmlHelpInstalled = true;
  ClickHelpOf({kPortPage, OpenSheet::kDevice});
  EXPECT_EQ(attempts(), 2u);
  EXPECT_THAT(HelpCalls(), IsEmpty());
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(PageHelp, AnUnregisteredControlIsFoundByItsName) {
  RegDeleteTreeW(HKEY_CLASSES_ROOT, L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}");
  ClickHelpOf({OpenSheet::kDevice});
  EXPECT_EQ(HelpCalls().size(), 1u);
}

// "": no tip. The TCP/IP page asks for tips of two controls, and the string table has none for them.
TEST_F(PageHelp, TipsFollowTheTableOfThePage) {
  struct Row {
    int tab, control;
    const wchar_t* tip;  // its beginning
  };
  const Row rows[] = {
      {kPortPage, IDC_PORT_BAUD_RATE, L""},
      {kPortPage, IDC_PORT_DATA_BITS_LABEL, L"The number of data bits"},
      {kPortPage, IDC_PORT_DATA_BITS, L"The number of data bits"},
      {kPortPage, IDC_PORT_PARITY, L"The parity"},
      {kPortPage, IDC_PORT_FLOW_CONTROL, L"The flow control"},
      {kPortPage, IDC_PORT_ADVANCED, L"Opens the advanced settings"},
      {kPortPage, IDC_PORT_RESTORE_DEFAULTS, L"Reloads the settings"},
      {OpenSheet::kDevice, IDC_DEVICE_COM_NUMBER, L"Change selection to use a different COM number"},
      {OpenSheet::kTcpIp, IDC_TCPIP_ADDRESS, L""},
  };
  for (const Row& row : rows) {
    On(row.tab, [&](HWND page) {
      const std::wstring tip = TipOf(page, GetDlgItem(page, row.control));
      EXPECT_TRUE(tip.starts_with(row.tip)) << row.control;
      EXPECT_EQ(tip.empty(), *row.tip == L'\0') << row.control;
    });
  }
}

// What a control draws, as the colours of its pixels, row by row.
std::vector<COLORREF> PixelsOf(HWND control) {
  RECT area;
  GetClientRect(control, &area);
  const HDC screen = GetDC(nullptr);
  const HDC context = CreateCompatibleDC(screen);
  const HBITMAP picture = CreateCompatibleBitmap(screen, area.right, area.bottom);
  const HGDIOBJ before = SelectObject(context, picture);
  SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(context), PRF_CLIENT);
  std::vector<COLORREF> pixels;
  for (int y = 0; y < area.bottom; ++y) {
    for (int x = 0; x < area.right; ++x) pixels.push_back(GetPixel(context, x, y));
  }
  SelectObject(context, before);
  DeleteObject(picture);
  DeleteDC(context);
  ReleaseDC(nullptr, screen);
  return pixels;
}

// The corners of the help picture show what its page has behind the labels; its middle shows the picture.
TEST_F(PageHelp, ThePictureStandsOnItsPagesBackgroundAndShowsTheFocus) {
  for (const auto& [tab, background] :
       {std::pair<int, COLORREF>{kPortPage, 0xF6F7F8}, {OpenSheet::kTcpIp, GetSysColor(COLOR_BTNFACE)}}) {
    SCOPED_TRACE(tab);
    On(tab, [background](HWND page) {
      const HWND picture = GetDlgItem(page, IDC_PORT_HELP_LINK);
      const std::vector<COLORREF> pixels = PixelsOf(picture);
      EXPECT_EQ(pixels.front(), background);
      EXPECT_EQ(pixels.back(), background);
      EXPECT_THAT(pixels, testing::Contains(RGB(0x2F, 0x7C, 0xC0)));
      SetFocus(picture);
      EXPECT_NE(PixelsOf(picture), pixels);
    });
  }
}

// What a click does, Enter and Space do; Enter does not press OK, and Escape stays the sheet's.
TEST_F(PageHelp, LinksFollowTheKeyboard) {
  for (const auto& [tab, control] :
       {std::pair{kPortPage, IDC_PORT_HELP_LINK}, {+OpenSheet::kAbout, IDC_ABOUT_WEBSITE}}) {
    SCOPED_TRACE(tab);
    On(tab, [&](HWND page) {
      const HWND link = GetDlgItem(page, control);
      for (const wchar_t key : {L'\r', L' ', L'x'}) SendMessageW(link, WM_CHAR, key, 0);
      for (const WPARAM key : {VK_RETURN, VK_ESCAPE}) {
        MSG message{link, WM_KEYDOWN, key, 0, 0, {}};
        const LRESULT code = SendMessageW(link, WM_GETDLGCODE, key, reinterpret_cast<LPARAM>(&message));
        EXPECT_EQ((code & DLGC_WANTMESSAGE) != 0, key == VK_RETURN);
      }
    });
  }
  EXPECT_EQ(HelpCalls().size(), 2u);
  EXPECT_EQ(machine.Screen().shellCalls.size(), 2u);
}

TEST_F(PageHelp, AClickOnTheAboutPagesLinkOpensTheMakersSite) {
  On(OpenSheet::kAbout, [](HWND page) {
    const HWND link = GetDlgItem(page, IDC_ABOUT_WEBSITE);
    const auto press = [&](int x, int releasedAtX) {
      SendMessageW(link, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, 2));
      SendMessageW(link, WM_LBUTTONUP, 0, MAKELPARAM(releasedAtX, 2));
    };
    EXPECT_TRUE(GetWindowLongW(link, GWL_STYLE) & SS_NOTIFY);
    Click(page, IDC_ABOUT_WEBSITE);
    press(2, 5000);  // released elsewhere
    SetWindowTextW(link, L"i");
    press(40, 40);  // beyond the shorter text
  });
  ASSERT_EQ(machine.Screen().shellCalls.size(), 1u);
  const workbench::ShellRecord& call = machine.Screen().shellCalls[0];
  EXPECT_EQ(call.owner, nullptr);
  EXPECT_EQ(call.operation, L"open");
  EXPECT_EQ(call.file, L"https://www.keldrin.example/");
  EXPECT_EQ(call.show, SW_SHOWNORMAL);
}

// Before a click and after it.
TEST_F(PageHelp, LinksHaveTheUsersColoursWhereTheyCanBeRead) {
  struct Row {
    std::wstring colour, visitedColour;  // as other programs store them
    COLORREF before, after;
  };
  for (const Row& row : {Row{L"0,128,0", L"128,64,0", RGB(0, 128, 0), RGB(128, 64, 0)},
                         Row{L"green", L"1,2", RGB(0, 0, 255), RGB(128, 0, 128)}}) {
    const auto store = [](const wchar_t* name, const std::wstring& text) {
      RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Internet Explorer\\Settings", name, REG_SZ,
                      text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    };
    store(L"Anchor Color", row.colour);
    store(L"Anchor Color Visited", row.visitedColour);
    On(OpenSheet::kAbout, [&](HWND page) {
      const HWND link = GetDlgItem(page, IDC_ABOUT_WEBSITE);
      EXPECT_THAT(PixelsOf(link), testing::Contains(row.before)) << testing::PrintToString(row.colour);
      Click(page, IDC_ABOUT_WEBSITE);
      EXPECT_THAT(PixelsOf(link), testing::Contains(row.after)) << testing::PrintToString(row.visitedColour);
    });
  }
}

}  // namespace
