// How long the port page lives, and what happens when things end at the wrong moment.
#include "rig_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>

#include "base/resource_ids.h"

namespace {

using workbench::HandleKind;

// The page holds two device information sets, so their number tells whether it lives.
std::size_t SetsOfPages(Rig& rig) {
  return rig.machine.Calls().OpenCount(HandleKind::DeviceSet);
}

TEST(PortPageLifetime, OtherRequestsAddNothingAndSucceed) {
  Rig rig;
  for (const DWORD request : {SPPSR_SELECT_DEVICE_RESOURCES, SPPSR_ENUM_BASIC_DEVICE_PROPERTIES, 0, 99}) {
    const PageRequest answer(rig, rig.Port(), request);
    EXPECT_TRUE(answer.result) << request;
    EXPECT_EQ(answer.offered, 0u) << request;
  }
  EXPECT_EQ(rig.Driver().Records().size(), 0u);
}

TEST(PortPageLifetime, NullPointersAreRefusals) {
  Rig rig;
  const LPFNADDPROPSHEETPAGE add = [](HPROPSHEETPAGE, LPARAM) -> BOOL {
    ADD_FAILURE() << "a page was added";
    return TRUE;
  };
  workbench::DeviceElement element(rig.machine, rig.Port());
  SP_PROPSHEETPAGE_REQUEST request{};
  request.cbSize = sizeof(request);
  request.PageRequested = SPPSR_ENUM_ADV_DEVICE_PROPERTIES;
  EXPECT_FALSE(rig.dll->PropPage(nullptr, add, 0));
  EXPECT_FALSE(rig.dll->PropPage(&request, add, 0)) << "no device";
  request.DeviceInfoSet = element.Set();
  EXPECT_FALSE(rig.dll->PropPage(&request, add, 0)) << "no element";
  request.DeviceInfoData = element.Data();
  EXPECT_FALSE(rig.dll->PropPage(&request, nullptr, 0)) << "no callback";
}

struct FailureRow {
  const char* name;
  void (*breakIt)(Rig&);
};

void FailAll(Rig& rig, const char* function) {
  rig.machine.Calls().Inject({.function = function, .count = workbench::Fault::kEveryLater});
}

const FailureRow kFailures[] = {
    {"no configuration interface", [](Rig& rig) { FailAll(rig, "SetupDiEnumDeviceInterfaces"); }},
    {"driver cannot be opened", [](Rig& rig) { FailAll(rig, "CreateFileW"); }},
    {"driver does not answer", [](Rig& rig) { FailAll(rig, "DeviceIoControl"); }},
    {"port without a parent", [](Rig& rig) { FailAll(rig, "CM_Get_Parent"); }},
    {"parent is gone", [](Rig& rig) { rig.server.card->present = false; }},
    {"bus set is refused",
     [](Rig& rig) {
       rig.Driver().Inject(
           {.operation = workbench::DriverFault::Operation::Read, .selector = workbench::kBusSet});
     }},
};

TEST(PortPageLifetime, PortWhoseSettingsCannotBeReadGetsNoPage) {
  for (const FailureRow& row : kFailures) {
    SCOPED_TRACE(row.name);
    Rig rig;
    row.breakIt(rig);
    const PageRequest answer(rig, rig.Port());
    EXPECT_FALSE(answer.result);
    EXPECT_EQ(answer.offered, 0u);
    EXPECT_EQ(SetsOfPages(rig), 0u);
    EXPECT_THAT(rig.Misuse(), testing::IsEmpty());
  }
}

// Whether the callback has taken it or not.
TEST(PortPageLifetime, PageThatIsNeverShownIsFreedWithItsHandle) {
  for (const bool accept : {true, false}) {
    Rig rig;
    const PageRequest answer(rig, rig.Port(), SPPSR_ENUM_ADV_DEVICE_PROPERTIES, accept);
    EXPECT_EQ(answer.result != FALSE, accept);
    EXPECT_EQ(answer.offered, 1u);
    EXPECT_EQ(SetsOfPages(rig), 2u);
    DestroyPropertySheetPage(answer.page);
    EXPECT_EQ(SetsOfPages(rig), 0u);
  }
}

TEST(PortPageLifetime, TwoSheetsDoNotShareState) {
  Rig rig;
  rig.web.SetPort(1, {.baudRate = 1200});
  rig.web.SetPort(2, {.baudRate = 2400});
  PageSheet first(rig, 0);
  std::optional<PageSheet> second(std::in_place, rig, 1);
  EXPECT_EQ(first.Text(IDC_PORT_BAUD_RATE), L"1200");
  EXPECT_EQ(second->Text(IDC_PORT_BAUD_RATE), L"2400");
  first.Check(IDC_PORT_CTS_ALWAYS_TRUE, true);
  EXPECT_EQ(second->Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "clear");
  second.reset();
  SendMessageW(first.Page(), WM_TIMER, 1, 0);
  EXPECT_TRUE(first.PressOk());
  EXPECT_EQ(SetsOfPages(rig), 0u);
}

// While the message about an unreachable device is up, the program may take the whole sheet away.
TEST(PortPageLifetime, SheetThatIsDestroyedUnderTheMessageBox) {
  Rig rig;
  PageSheet sheet(rig);
  rig.web.Stop();
  rig.machine.Screen().AnswerBy([&](const workbench::MessageBoxRecord&) {
    DestroyWindow(sheet.Window());
    EXPECT_EQ(SetsOfPages(rig), 2u) << "the handler goes on when the box is gone";
    return IDOK;
  });
  sheet.Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(rig.Boxes().size(), 1u);
  EXPECT_FALSE(IsWindow(sheet.Window()));
  EXPECT_EQ(SetsOfPages(rig), 0u) << "freed when the handler was through";
  EXPECT_THAT(rig.Misuse(), testing::IsEmpty());
}

// The timer goes on while the message box is up.
TEST(PortPageLifetime, TickUnderTheMessageBoxWaits) {
  Rig rig;
  PageSheet sheet(rig);
  rig.web.Stop();
  rig.machine.Screen().AnswerBy([&](const workbench::MessageBoxRecord&) {
    rig.Driver().ClearRecords();
    SendMessageW(sheet.Page(), WM_TIMER, 1, 0);
    EXPECT_THAT(rig.Driver().Records(), testing::IsEmpty());
    return IDOK;
  });
  sheet.Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(rig.Boxes().size(), 1u);
  EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Offline");
}

// Cancel was pressed while the exchange with the device server blocked the thread.
TEST(PortPageLifetime, SheetThatIsClosedDuringTheExchange) {
  Rig rig;
  PageSheet sheet(rig);
  rig.web.SetAnswer("/p1", {.delay = std::chrono::milliseconds(200)});
  PostMessageW(sheet.Window(), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
  SendMessageW(sheet.Page(), WM_TIMER, 1, 0);
  PumpMessages();
  EXPECT_EQ(SendMessageW(sheet.Window(), PSM_GETCURRENTPAGEHWND, 0, 0), 0) << "the sheet has ended";
  sheet.Close();
  EXPECT_EQ(SetsOfPages(rig), 0u);
  EXPECT_THAT(rig.Boxes(), testing::IsEmpty());
  EXPECT_THAT(rig.Misuse(), testing::IsEmpty());
}

}  // namespace
