// The device page: what it shows, what it asks, what it writes, and renaming through it.
#include "page_test.h"

namespace {

constexpr char kTurned[] = "ForceCOMPortConnect 0 -> 1, RealTxFifoEmulation 1 -> 0";  // the switches

class AdvancedDevice : public PageTest {
 protected:
  AdvancedDevice() { PageOf(); }
  // Chooses a COM name, if one is given, turns both switches, if asked to, and presses OK.
  Outcome Apply(const wchar_t* comName, bool toggle = false) {
    return PageTest::Apply(OpenSheet::kDevice, [=](HWND page) {
      if (comName != nullptr) Select(page, IDC_DEVICE_COM_NUMBER, comName);
      if (!toggle) return;
      for (const int box : {IDC_DEVICE_HIGH_PERFORMANCE, IDC_DEVICE_CONNECT_OFFLINE}) Click(page, box);
    });
  }
  [[nodiscard]] std::wstring PortName() { return NameOf(Port()); }
};

TEST_F(AdvancedDevice, ShowsTheDriversValuesAndTheDatabasesNames) {
  BusSet().SetText("InterfaceType", "TCP & more");
  BusSet().SetNumber("RxFifoSize", 16384);
  BusSet().SetNumber("TxFifoSize", 64);
  BusSet().SetNumber("MaximumBaudRate", 460800);
  BusSet().SetNumber("ForceCOMPortConnect", 1);
  Run([](const OpenSheet& sheet) {
    const HWND page = sheet.Turn(OpenSheet::kDevice);
    const std::pair<int, const wchar_t*> texts[] = {
        {IDC_DEVICE_COM_NUMBER_GROUP, L"COM Number"}, {IDC_DEVICE_COM_NUMBER_LABEL, L"COM Port Number:"},
        {IDC_DEVICE_INTERFACE_TYPE, L"TCP & more"},   {IDC_DEVICE_RX_FIFO_SIZE, L"16384 bytes"},
        {IDC_DEVICE_TX_FIFO_SIZE, L"64 bytes"},       {IDC_DEVICE_MAX_BAUD_RATE, L"460800 baud"}};
    for (const auto& [control, text] : texts) EXPECT_EQ(TextOf(page, control), text);
    EXPECT_TRUE(IsChecked(page, IDC_DEVICE_CONNECT_OFFLINE));
    EXPECT_FALSE(IsChecked(page, IDC_DEVICE_HIGH_PERFORMANCE)) << "the inverse of RealTxFifoEmulation";
    EXPECT_EQ(EntriesOf(page, IDC_DEVICE_COM_NUMBER).at(7), L"COM8 (in use)");
    EXPECT_EQ(SelectedOf(page, IDC_DEVICE_COM_NUMBER), L"COM7");
  });
}

TEST_F(AdvancedDevice, SwitchesAloneAreWrittenAndNothingIsRenamed) {
  EXPECT_EQ(Apply(nullptr, true).result, 1);
  EXPECT_THAT(Written(), ElementsAre(kTurned));
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(PortName(), L"COM7");
  EXPECT_EQ(machine.Calls().CountOf("DefineDosDeviceW"), 0u);
}

TEST_F(AdvancedDevice, AChosenNumberIsRenamedToWithoutTheDrivers) {
  EXPECT_EQ(Apply(L"COM20").result, 1);
  EXPECT_EQ(PortName(), L"COM20");
  EXPECT_TRUE(workbench::PlacesOf(machine, Port()).Agree());
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_THAT(Written(), IsEmpty());
}

TEST_F(AdvancedDevice, ATakenNumberIsGivenAfterAYesWithoutItsMark) {
  machine.Screen().Answer(IDNO);
  EXPECT_FALSE(Apply(L"COM8 (in use)").stayedOpen) << "a declined rename is no failure";
  EXPECT_THAT(BoxTexts(), ElementsAre(std::wstring(kNameTaken) + L"|Error|68"));
  EXPECT_EQ(PortName(), L"COM7");
  machine.Screen().Answer(IDYES);
  EXPECT_FALSE(Apply(L"COM8 (in use)").stayedOpen);
  EXPECT_EQ(PortName(), L"COM8");
}

// The question about renaming is asked for the switches as well, and once more for a new number.
TEST_F(AdvancedDevice, OfAPortInUseTheSwitchesAndTheRenameAskOneByOne) {
  const std::wstring asksForSwitches = kPortOpen + std::wstring(L"|Warning!|68");
  const std::wstring asksForRename = kPortOpen + std::wstring(L"|Error|68");
  Port().port->openElsewhere = true;
  machine.Screen().Answer(IDNO);
  EXPECT_TRUE(Apply(L"COM20", true).stayedOpen);
  EXPECT_THAT(BoxTexts(), ElementsAre(asksForSwitches));
  EXPECT_NE(Boxes()[0].owner, nullptr);
  EXPECT_THAT(Written(), IsEmpty());
  Boxes().clear();
  machine.Screen().Answer(IDYES);
  machine.Screen().Answer(IDNO);
  EXPECT_FALSE(Apply(L"COM20", true).stayedOpen);
  EXPECT_THAT(BoxTexts(), ElementsAre(asksForSwitches, asksForRename));
  EXPECT_THAT(Written(), ElementsAre(kTurned));
  EXPECT_EQ(PortName(), L"COM7");
}

TEST_F(AdvancedDevice, AFailedRenameIsReportedAndKeepsTheSheet) {
  machine.Calls().Inject({.function = "DefineDosDeviceW", .count = workbench::Fault::kEveryLater});
  const Outcome outcome = Apply(L"COM20");
  machine.Calls().ClearFaults();
  EXPECT_TRUE(outcome.stayedOpen);
  EXPECT_THAT(BoxTexts(), ElementsAre(L"There was an error renaming the COM port.|Error|16"));
  EXPECT_EQ(PortName(), L"COM7");
}

// Names that the list does not have, or no list at all, leave the box without a selection.
TEST_F(AdvancedDevice, WithoutASelectionNothingIsRenamed) {
  const std::wstring key = workbench::ParametersKeyOf(Port().instanceId);
  const auto expectNoSelection = [&](const wchar_t* name) {
    machine.Registry().SetText(key, L"PortName", name);
    const Outcome outcome = PageTest::Apply(
        OpenSheet::kDevice, [](HWND page) { EXPECT_EQ(SelectedOf(page, IDC_DEVICE_COM_NUMBER), L""); });
    EXPECT_FALSE(outcome.stayedOpen);
    EXPECT_EQ(PortName(), name);
  };
  for (const wchar_t* name : {L"COM256", L"LPT1", L""}) expectNoSelection(name);
  machine.ComNames().openError = ERROR_ACCESS_DENIED;
  expectNoSelection(L"COM7");
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_THAT(Written(), IsEmpty());
}

}  // namespace
