// The RS422/485 page, in a sheet of its own. The product makes it and never shows it, so that a DLL of the
// same code puts it up.
#include "advanced_test.h"
#include "base/resource_ids.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t kInUse[] =
    L"The port has been opened by another application.  Renaming the port may have an unpredictable effect "
    L"on the other application.  Do you wish to continue?|Warning!|68";

class AdvancedRs422485 : public AdvancedTest {
 protected:
  void SetUp() override {
    PortSet().SetNumber("SupportedDuplexModes", 3);
    PortSet().SetNumber("DuplexMode", 1);
  }
  Outcome RunRs422485(const Step& step) {
    const FARPROC show = GetProcAddress(probe_.Module(), "ShowRs422485Sheet");
    workbench::DeviceElement element(machine, Port());
    return Drive(step, [&] {
      return reinterpret_cast<INT_PTR (*)(HDEVINFO, SP_DEVINFO_DATA*)>(reinterpret_cast<void*>(show))(
          element.Set(), element.Data());
    });
  }
  Outcome Choose(const wchar_t* mode) {
    return RunRs422485([=](const OpenSheet& sheet) {
      Select(sheet.Turn(0), IDC_RS422485_DUPLEX, mode);
      sheet.PressOk();
    });
  }

 private:
  [[nodiscard]] static std::wstring ProbePath() {
    const std::wstring path = workbench::Dll::DefaultPath();
    return path.substr(0, path.rfind(L'\\') + 1) + L"page_probe.dll";
  }
  workbench::Dll probe_{machine, ProbePath()};
};

constexpr wchar_t kRs422[] = L"RS422 full-duplex mode";
constexpr wchar_t kRs485[] = L"RS485 half-duplex autogating mode";

TEST_F(AdvancedRs422485, OffersTheSupportedModes) {
  PortSet().SetNumber("DuplexMode", 2);
  RunRs422485([](const OpenSheet& sheet) {
    EXPECT_THAT(sheet.Tabs(), ElementsAre(L"RS422/485 Settings"));
    const HWND page = sheet.Turn(0);
    EXPECT_THAT(EntriesOf(page, IDC_RS422485_DUPLEX), ElementsAre(kRs422, kRs485));
    EXPECT_EQ(SelectedOf(page, IDC_RS422485_DUPLEX), kRs485);
    EXPECT_EQ(TextOf(page, IDC_RS422485_NOTE),
              L"Change selection to use different duplex mode settings for this port.");
    const std::wstring tip = TipOf(page, GetDlgItem(page, IDC_RS422485_DUPLEX));
    EXPECT_TRUE(tip.starts_with(L"422 / 485 cards have got different means of communication.")) << tip;
    EXPECT_TRUE(TipOf(page, page).starts_with(L"Reloads")) << "all else has the tip of the button";
    Click(page, IDC_RS422485_HELP_LINK);
    AskForHelp(page, IDC_RS422485_DUPLEX);
  });
  PortSet().SetNumber("SupportedDuplexModes", 0);
  RunRs422485([](const OpenSheet& sheet) {
    EXPECT_EQ(SelectedOf(sheet.Turn(0), IDC_RS422485_DUPLEX), L"2") << "a mode that is not offered is shown";
  });
  const std::vector<workbench::HelpRecord>& help = machine.Screen().helpCalls;
  ASSERT_EQ(help.size(), 2u);
  EXPECT_EQ(help[0].topic, L"KdNUI41.chm::/422485Page.htm>mainwin");
  EXPECT_THAT(help[1].ids, ElementsAre(259u, 0x806B034Eu, 892u, 0x806B037Cu, 0u, 0u));
}

TEST_F(AdvancedRs422485, WritesTheModeAndTellsEverybody) {
  EXPECT_EQ(Choose(kRs485).result, 1);
  EXPECT_THAT(Written(), ElementsAre("DuplexMode 1 -> 2"));
  const auto broadcasts = machine.Calls().CallsOf("BroadcastSystemMessageW");
  ASSERT_EQ(broadcasts.size(), 1u);
  EXPECT_EQ(broadcasts[0].Number(0), 0x1u) << "asked, not posted";
  EXPECT_EQ(broadcasts[0].Number(2), static_cast<UINT>(WM_DEVICECHANGE));
  EXPECT_EQ(broadcasts[0].Number(3), 0x8006u) << "DBT_CUSTOMEVENT";
  EXPECT_EQ(broadcasts[0].detail, L"to all, about {4d36e978-e325-11ce-bfc1-08002be10318}");
}

TEST_F(AdvancedRs422485, APortInUseAsks) {
  Port().port->openElsewhere = true;
  machine.Screen().Answer(IDNO);
  EXPECT_TRUE(Choose(kRs485).stayedOpen);
  EXPECT_THAT(BoxTexts(), ElementsAre(kInUse));
  EXPECT_THAT(Written(), IsEmpty());
  machine.Screen().Answer(IDYES);
  EXPECT_FALSE(Choose(kRs485).stayedOpen);
  EXPECT_THAT(Written(), ElementsAre("DuplexMode 1 -> 2"));
}

TEST_F(AdvancedRs422485, ADriverThatRefusesKeepsTheSheet) {
  Driver().Inject({.operation = workbench::DriverFault::Operation::Write});
  EXPECT_TRUE(Choose(kRs485).stayedOpen);
  Driver().ClearFaults();
  EXPECT_THAT(machine.Screen().broadcasts, IsEmpty());
}

TEST_F(AdvancedRs422485, RestoreShowsTheDefaultAndWritesNothing) {
  struct Row {
    std::uint32_t defaultMode;
    const wchar_t* shown;
  };
  for (const Row& row : {Row{0, kRs422}, Row{1, kRs422}, Row{2, kRs485}}) {
    Driver().Default(workbench::kPortSet).SetNumber("DuplexMode", row.defaultMode);
    PortSet().SetNumber("DuplexMode", 2);
    RunRs422485([&](const OpenSheet& sheet) {
      const HWND page = sheet.Turn(0);
      Click(page, IDC_RS422485_RESTORE_DEFAULTS);
      EXPECT_EQ(SelectedOf(page, IDC_RS422485_DUPLEX), row.shown) << row.defaultMode;
    });
  }
  EXPECT_THAT(Written(), IsEmpty());
}

}  // namespace
