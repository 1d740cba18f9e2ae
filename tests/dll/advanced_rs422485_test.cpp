// The RS422/485 page, which the product makes and never shows: a DLL of the same code puts it up in a sheet
// of its own.
#include "page_test.h"

namespace {

constexpr wchar_t kRs422[] = L"RS422 full-duplex mode";
constexpr wchar_t kRs485[] = L"RS485 half-duplex autogating mode";

class AdvancedRs422485 : public PageTest {
 protected:
  Outcome RunRs422485(const std::function<void(HWND)>& edit) {
    const FARPROC show = GetProcAddress(probe_.Module(), "ShowRs422485Sheet");
    workbench::DeviceElement element(machine, Port());
    const auto step = [&](const OpenSheet& sheet) {
      edit(sheet.Turn(0));
      sheet.PressOk();
    };
    return Drive(step, [&] {
      return reinterpret_cast<INT_PTR (*)(HDEVINFO, SP_DEVINFO_DATA*)>(reinterpret_cast<void*>(show))(
          element.Set(), element.Data());
    });
  }

 private:
  [[nodiscard]] static std::wstring ProbePath() {
    const std::wstring path = workbench::Dll::DefaultPath();
    return path.substr(0, path.rfind(L'\\') + 1) + L"page_probe.dll";
  }
  workbench::Dll probe_{machine, ProbePath()};
};

// A restore of a driver without a default shows RS-422, and writes nothing itself.
TEST_F(AdvancedRs422485, SupportedModesAreOfferedAndTheChosenOneIsWrittenAndBroadcast) {
  PortSet().SetNumber("SupportedDuplexModes", 3);
  PortSet().SetNumber("DuplexMode", 1);
  RunRs422485([&](HWND page) {
    EXPECT_TRUE(TipOf(page, GetDlgItem(page, IDC_RS422485_DUPLEX)).starts_with(L"422 / 485 cards"));
    EXPECT_TRUE(TipOf(page, page).starts_with(L"Reloads")) << "all else has the tip of the button";
    Select(page, IDC_RS422485_DUPLEX, kRs485);
    Click(page, IDC_RS422485_RESTORE_DEFAULTS);
    EXPECT_THAT(EntriesOf(page, IDC_RS422485_DUPLEX), ElementsAre(kRs422, kRs485));
    EXPECT_EQ(SelectedOf(page, IDC_RS422485_DUPLEX), kRs422);
    EXPECT_THAT(Written(), IsEmpty());
    Select(page, IDC_RS422485_DUPLEX, kRs485);
  });
  EXPECT_THAT(Written(), ElementsAre("DuplexMode 1 -> 2"));
  const std::vector<Call> broadcasts = machine.Calls().CallsOf("BroadcastSystemMessageW");
  ASSERT_EQ(broadcasts.size(), 1u);
  EXPECT_EQ(broadcasts[0].Number(2), static_cast<UINT>(WM_DEVICECHANGE));
  EXPECT_EQ(broadcasts[0].Number(3), 0x8006u) << "DBT_CUSTOMEVENT";
  EXPECT_EQ(broadcasts[0].detail, L"to all, about {4d36e978-e325-11ce-bfc1-08002be10318}");
}

TEST_F(AdvancedRs422485, APortInUseOrADriverThatRefusesKeepsTheSheet) {
  const auto choose = [](HWND page) { Select(page, IDC_RS422485_DUPLEX, kRs485); };
  Driver().Inject({.operation = DriverFault::Operation::Write});
  EXPECT_TRUE(RunRs422485(choose).stayedOpen);
  Driver().ClearFaults();
  Port().port->openElsewhere = true;
  machine.Screen().Answer(IDNO);
  EXPECT_TRUE(RunRs422485(choose).stayedOpen);
  EXPECT_EQ(Boxes().size(), 1u);
  EXPECT_THAT(Written(), IsEmpty());
  EXPECT_THAT(machine.Screen().broadcasts, IsEmpty());
}

}  // namespace
