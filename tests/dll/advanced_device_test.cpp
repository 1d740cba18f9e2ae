// The device page: what it shows, what it asks, what it writes, and renaming through it.
#include "advanced_test.h"
#include "base/resource_ids.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t kInUseWarning[] =
    L"The port has been opened by another application.  Renaming the port may have an unpredictable effect "
    L"on the other application.  Do you wish to continue?|Warning!|68";
constexpr wchar_t kInUseRename[] =
    L"The port has been opened by another application.  Renaming the port may have an unpredictable effect "
    L"on the other application.  Do you wish to continue?|Error|68";
constexpr wchar_t kTaken[] =
    L"This COM name is being used by another device (such as another com port or modem).  Using duplicate "
    L"names can lead to inaccessible devices and changed settings.  Do you want to continue?|Error|68";
constexpr wchar_t kRenameFailed[] = L"There was an error renaming the COM port.|Error|16";

class AdvancedDevice : public AdvancedTest {
 protected:
  // Chooses a COM name, if one is given, switches high performance, if asked to, and presses OK.
  Outcome Apply(const wchar_t* comName, bool toggle = false) {
    return Run([=](const OpenSheet& sheet) {
      const HWND page = sheet.Turn(OpenSheet::kDevice);
      if (comName != nullptr) Select(page, IDC_DEVICE_COM_NUMBER, comName);
      if (toggle) Click(page, IDC_DEVICE_HIGH_PERFORMANCE);
      sheet.PressOk();
    });
  }
  [[nodiscard]] std::wstring PortName() { return workbench::PlacesOf(machine, Port()).portName; }
};

TEST_F(AdvancedDevice, ShowsWhatTheDriverAndTheDatabaseSay) {
  BusSet().SetText("InterfaceType", "TCP & more");
  BusSet().SetNumber("RxFifoSize", 16384);
  BusSet().SetNumber("TxFifoSize", 64);
  BusSet().SetNumber("MaximumBaudRate", 460800);
  BusSet().SetNumber("ForceCOMPortConnect", 1);
  machine.ComNames().Claim(255);
  Run([](const OpenSheet& sheet) {
    const HWND page = sheet.Turn(OpenSheet::kDevice);
    EXPECT_EQ(TextOf(page, IDC_DEVICE_COM_NUMBER_GROUP), L"COM Number");
    EXPECT_EQ(TextOf(page, IDC_DEVICE_COM_NUMBER_LABEL), L"COM Port Number:");
    EXPECT_EQ(TextOf(page, IDC_DEVICE_INTERFACE_TYPE), L"TCP & more");
    EXPECT_EQ(TextOf(page, IDC_DEVICE_RX_FIFO_SIZE), L"16384 bytes");
    EXPECT_EQ(TextOf(page, IDC_DEVICE_TX_FIFO_SIZE), L"64 bytes");
    EXPECT_EQ(TextOf(page, IDC_DEVICE_MAX_BAUD_RATE), L"460800 baud");
    EXPECT_TRUE(IsChecked(page, IDC_DEVICE_CONNECT_OFFLINE));
    EXPECT_FALSE(IsChecked(page, IDC_DEVICE_HIGH_PERFORMANCE)) << "the inverse of RealTxFifoEmulation";
    const std::vector<std::wstring> names = EntriesOf(page, IDC_DEVICE_COM_NUMBER);
    ASSERT_EQ(names.size(), 255u);
    EXPECT_EQ(names[5], L"COM6");
    EXPECT_EQ(names[6], L"COM7");
    EXPECT_EQ(names[7], L"COM8 (in use)");
    EXPECT_EQ(names[254], L"COM255 (in use)");
    EXPECT_EQ(SelectedOf(page, IDC_DEVICE_COM_NUMBER), L"COM7");
  });
  EXPECT_EQ(machine.Calls().CountOf("ComDBOpen"), machine.Calls().CountOf("ComDBClose"));
}

TEST_F(AdvancedDevice, WritesOnlyWhatWasSwitched) {
  EXPECT_EQ(Apply(nullptr, true).result, 1);
  EXPECT_THAT(Written(), ElementsAre("RealTxFifoEmulation 1 -> 0"));
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(PortName(), L"COM7");
}

// The question about renaming is asked for the switches as well.
TEST_F(AdvancedDevice, ASwitchOfAPortInUseAsks) {
  Port().port->openElsewhere = true;
  machine.Screen().Answer(IDNO);
  EXPECT_TRUE(Apply(nullptr, true).stayedOpen);
  EXPECT_THAT(BoxTexts(), ElementsAre(kInUseWarning));
  EXPECT_NE(Boxes()[0].owner, nullptr);
  EXPECT_THAT(Written(), IsEmpty());

  machine.Screen().Answer(IDYES);
  EXPECT_FALSE(Apply(nullptr, true).stayedOpen);
  EXPECT_THAT(Written(), ElementsAre("RealTxFifoEmulation 1 -> 0"));
}

TEST_F(AdvancedDevice, RenamesThroughThePage) {
  EXPECT_EQ(Apply(L"COM20").result, 1);
  const workbench::ComPlaces places = workbench::PlacesOf(machine, Port());
  EXPECT_EQ(places.portName, L"COM20");
  EXPECT_TRUE(places.Agree());
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_THAT(Written(), IsEmpty()) << "a rename is no business of the drivers";
}

TEST_F(AdvancedDevice, ATakenNumberIsAskedForAndGivenWithoutItsMark) {
  machine.Screen().Answer(IDNO);
  EXPECT_FALSE(Apply(L"COM8 (in use)").stayedOpen) << "a declined rename is no failure";
  EXPECT_THAT(BoxTexts(), ElementsAre(kTaken));
  EXPECT_EQ(PortName(), L"COM7");

  machine.Screen().Answer(IDYES);
  EXPECT_FALSE(Apply(L"COM8 (in use)").stayedOpen);
  EXPECT_EQ(PortName(), L"COM8");
}

// A switch and a new number on a port in use: each asks for itself.
TEST_F(AdvancedDevice, AsksTwiceInARow) {
  Port().port->openElsewhere = true;
  machine.Screen().Answer(IDYES);
  machine.Screen().Answer(IDNO);
  EXPECT_FALSE(Apply(L"COM20", true).stayedOpen);
  EXPECT_THAT(BoxTexts(), ElementsAre(kInUseWarning, kInUseRename));
  EXPECT_THAT(Written(), ElementsAre("RealTxFifoEmulation 1 -> 0"));
  EXPECT_EQ(PortName(), L"COM7");
}

TEST_F(AdvancedDevice, AFailedRenameIsToldAndKeepsTheSheet) {
  machine.Calls().Inject({.function = "DefineDosDeviceW", .count = workbench::Fault::kEveryLater});
  const Outcome outcome = Apply(L"COM20");
  machine.Calls().ClearFaults();
  EXPECT_TRUE(outcome.stayedOpen);
  EXPECT_THAT(BoxTexts(), ElementsAre(kRenameFailed));
  EXPECT_EQ(PortName(), L"COM7");
}

// Names that the list does not have, or no list at all, leave the box without a selection: nothing is
// renamed.
TEST_F(AdvancedDevice, WithoutASelectionNothingIsRenamed) {
  const std::wstring key = workbench::ParametersKeyOf(Port().instanceId);
  for (const wchar_t* name : {L"COM256", L"COM300", L"LPT1", L""}) {
    machine.Registry().SetText(key, L"PortName", name);
    const Outcome outcome = Run([](const OpenSheet& sheet) {
      EXPECT_EQ(SelectedOf(sheet.Turn(OpenSheet::kDevice), IDC_DEVICE_COM_NUMBER), L"");
      sheet.PressOk();
    });
    EXPECT_FALSE(outcome.stayedOpen);
    EXPECT_EQ(PortName(), name);
  }
  machine.ComNames().openError = ERROR_ACCESS_DENIED;
  Run([](const OpenSheet& sheet) {
    EXPECT_THAT(EntriesOf(sheet.Turn(OpenSheet::kDevice), IDC_DEVICE_COM_NUMBER), IsEmpty());
    sheet.PressOk();
  });
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_THAT(Written(), IsEmpty());
}

// The sheet closes: a user cannot mend a driver.
TEST_F(AdvancedDevice, ADriverThatCannotBeReadOnApplyWritesNothing) {
  const Outcome outcome = Run([this](const OpenSheet& sheet) {
    const HWND page = sheet.Turn(OpenSheet::kDevice);
    Select(page, IDC_DEVICE_COM_NUMBER, L"COM20");
    Click(page, IDC_DEVICE_CONNECT_OFFLINE);
    Driver().Inject({.operation = workbench::DriverFault::Operation::Read});
    sheet.PressOk();
  });
  Driver().ClearFaults();
  EXPECT_FALSE(outcome.stayedOpen);
  EXPECT_EQ(PortName(), L"COM7");
  EXPECT_THAT(Written(), IsEmpty());
}

// The switches stay as they were, and the new number is none of the driver's business.
TEST_F(AdvancedDevice, ADriverThatRefusesTheSwitchesIsNoHindranceToARename) {
  Driver().Inject({.operation = workbench::DriverFault::Operation::Write});
  EXPECT_FALSE(Apply(L"COM20", true).stayedOpen);
  Driver().ClearFaults();
  EXPECT_EQ(BusSet().Number("RealTxFifoEmulation"), 1u);
  EXPECT_EQ(PortName(), L"COM20");
  EXPECT_THAT(Boxes(), IsEmpty());
}

}  // namespace
