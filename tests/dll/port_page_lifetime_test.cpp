// How long the port page lives, and what happens when things end at the wrong moment.
#include "page_test.h"

#include <chrono>

namespace {

class PortPageLifetime : public PageTest {
 protected:
  // The page holds two device information sets, so their number tells whether it lives.
  [[nodiscard]] std::size_t SetsOfPages() { return machine.Calls().OpenCount(HandleKind::DeviceSet); }
};

TEST_F(PortPageLifetime, OtherRequestsAddNothingAndSucceed) {
  for (const DWORD request : {SPPSR_SELECT_DEVICE_RESOURCES, SPPSR_ENUM_BASIC_DEVICE_PROPERTIES, 0, 99}) {
    const PageRequest answer(*this, Port(), request);
    EXPECT_TRUE(answer.result) << request;
    EXPECT_EQ(answer.offered, 0u) << request;
  }
  EXPECT_THAT(Driver().Records(), IsEmpty());
}

TEST_F(PortPageLifetime, NullPointersAreRefused) {
  const LPFNADDPROPSHEETPAGE add = [](HPROPSHEETPAGE, LPARAM) -> BOOL {
    ADD_FAILURE() << "a page was added";
    return TRUE;
  };
  workbench::DeviceElement element(machine, Port());
  SP_PROPSHEETPAGE_REQUEST request{};
  request.cbSize = sizeof(request);
  request.PageRequested = SPPSR_ENUM_ADV_DEVICE_PROPERTIES;
  EXPECT_FALSE(dll->PropPage(nullptr, add, 0));
  EXPECT_FALSE(dll->PropPage(&request, add, 0)) << "no device";
  request.DeviceInfoSet = element.Set();
  EXPECT_FALSE(dll->PropPage(&request, add, 0)) << "no element";
  request.DeviceInfoData = element.Data();
  EXPECT_FALSE(dll->PropPage(&request, nullptr, 0)) << "no callback";
}

TEST_F(PortPageLifetime, APortWhoseSettingsCannotBeReadGetsNoPage) {
  const auto expectNoPage = [&](const char* cause) {
    const PageRequest answer(*this, Port());
    EXPECT_FALSE(answer.result) << cause;
    EXPECT_EQ(answer.offered, 0u) << cause;
    EXPECT_EQ(SetsOfPages(), 0u) << cause;
  };
  Driver().Inject({.operation = DriverFault::Operation::Read, .selector = kBusSet});
  expectNoPage("the bus set is refused");
  Driver().ClearFaults();
  server.card->present = false;
  expectNoPage("the device server is gone");
}

// Whether the callback has taken it or not.
TEST_F(PortPageLifetime, APageThatIsNeverShownIsFreedWithItsHandle) {
  for (const bool accept : {true, false}) {
    const PageRequest answer(*this, Port(), SPPSR_ENUM_ADV_DEVICE_PROPERTIES, accept);
    EXPECT_EQ(answer.result != FALSE, accept);
    EXPECT_EQ(answer.offered, 1u);
    EXPECT_EQ(SetsOfPages(), 2u);
    DestroyPropertySheetPage(answer.page);
    EXPECT_EQ(SetsOfPages(), 0u);
  }
}

// While the message about an unreachable device is up, the program may take the whole sheet away.
TEST_F(PortPageLifetime, ASheetDestroyedUnderItsMessageBoxLivesUntilItsHandlerReturns) {
  const PageSheet& sheet = PageOf();
  web.Stop();
  machine.Screen().AnswerBy([&](const workbench::MessageBoxRecord&) {
    DestroyWindow(sheet.Window());
    EXPECT_EQ(SetsOfPages(), 2u) << "the handler goes on when the box is gone";
    return IDOK;
  });
  sheet.Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(Boxes().size(), 1u);
  EXPECT_FALSE(IsWindow(sheet.Window()));
  EXPECT_EQ(SetsOfPages(), 0u) << "freed when the handler was through";
}

// The timer goes on while the message box is up.
TEST_F(PortPageLifetime, ATickUnderTheMessageBoxReadsNothing) {
  const PageSheet& sheet = PageOf();
  web.Stop();
  machine.Screen().AnswerBy([&](const workbench::MessageBoxRecord&) {
    Driver().ClearRecords();
    Tick();
    EXPECT_THAT(Driver().Records(), IsEmpty());
    return IDOK;
  });
  sheet.Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Offline");
}

// Cancel was pressed while the exchange with the device server blocked the thread.
TEST_F(PortPageLifetime, ASheetClosedDuringTheExchangeEndsAfterIt) {
  const PageSheet& sheet = PageOf();
  web.SetAnswer("/p1", {.delay = std::chrono::milliseconds(200)});
  PostMessageW(sheet.Window(), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
  Tick();
  PumpMessages();
  EXPECT_EQ(SendMessageW(sheet.Window(), PSM_GETCURRENTPAGEHWND, 0, 0), 0) << "the sheet has ended";
  ClosePage();
  EXPECT_EQ(SetsOfPages(), 0u);
  EXPECT_THAT(Boxes(), IsEmpty());
}

}  // namespace
