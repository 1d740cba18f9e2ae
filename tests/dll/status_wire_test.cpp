// What the port page asks of WinINet, in which order and with which arguments, and what is shown and closed
// when a step of it fails.
#include "page_test.h"

#include <wininet.h>

namespace {

using testing::HasSubstr;

constexpr const char* kSession = "InternetOpenW";
constexpr const char* kConnect = "InternetConnectW";
constexpr const char* kOpenRequest = "HttpOpenRequestW";
constexpr const char* kSend = "HttpSendRequestW";
constexpr const char* kRead = "InternetReadFile";
constexpr const char* kClose = "InternetCloseHandle";

class StatusWire : public PageTest {
 protected:
  // The calls that change what a window shows.
  [[nodiscard]] std::size_t Changes() {
    std::size_t count =
        machine.Calls().OrderOf({"SetWindowTextW", "SetDlgItemTextW", "ShowWindow", "EnableWindow"}).size();
    for (const Call& call : machine.Calls().CallsOf("SendMessageW")) {
      count += call.Number(1) == BM_SETCHECK || call.Number(1) == WM_SETTEXT ? 1 : 0;
    }
    return count;
  }
};

TEST_F(StatusWire, ARefreshOpensThreeHandlesAndClosesThemInReverse) {
  PageOf();
  machine.Calls().ClearLog();
  Tick();
  ASSERT_THAT(machine.Calls().OrderOf({kSession, kConnect, kOpenRequest, kSend, kRead, kClose}),
              ElementsAre(kSession, kConnect, kOpenRequest, kSend, kRead, kRead, kClose, kClose, kClose));
  const auto call = [&](const char* function) { return machine.Calls().CallsOf(function).at(0); };
  EXPECT_EQ(call(kSession).Number(1), static_cast<std::uint64_t>(INTERNET_OPEN_TYPE_DIRECT));
  EXPECT_EQ(call(kSession).Number(4), 0x4400000u) << "neither read from the cache nor written to it";
  EXPECT_EQ(call(kConnect).Text(1), L"127.0.0.1");
  std::vector<std::uint64_t> closed;
  for (const Call& close : machine.Calls().CallsOf(kClose)) closed.push_back(close.Number(0));
  EXPECT_THAT(closed, ElementsAre(call(kOpenRequest).result, call(kConnect).result, call(kSession).result));
}

TEST_F(StatusWire, TheDeviceServerSeesAPlainGet) {
  PageOf();
  const auto requests = web.Requests();
  ASSERT_EQ(requests.size(), 1u);
  const workbench::HttpRequest& request = requests[0].request;
  EXPECT_EQ(request.method + " " + request.target, "GET /p1");
  EXPECT_THAT(request.head, HasSubstr("\r\nAccept: */*\r\n"));
  EXPECT_THAT(request.head, HasSubstr("\r\nUser-Agent: dll_tests\r\n"));
  EXPECT_THAT(request.head, testing::Not(HasSubstr("Content-Type")));
}

TEST_F(StatusWire, AStepThatFailsIsOfflineAndReportedUnlessOnATick) {
  const PageSheet& sheet = PageOf();
  machine.Screen().AnswerBy([&](const workbench::MessageBoxRecord&) {
    EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Internet), 0u)
        << "a person may leave the box up for hours";
    return IDOK;
  });
  // The function and which call of it.
  using Row = std::pair<const char*, std::uint64_t>;
  for (const auto& [function, from] :
       {Row{kSession, 1}, {kConnect, 1}, {kOpenRequest, 1}, {kSend, 1}, {kRead, 1}, {kRead, 2}}) {
    SCOPED_TRACE(std::string(function) + " " + std::to_string(from));
    const auto refresh = [&](bool tick) {
      Driver().ClearRecords();
      Boxes().clear();
      machine.Calls().Inject({.function = function, .from = from});
      tick ? Tick() : sheet.Click(IDC_PORT_RESTORE_DEFAULTS);
      machine.Calls().ClearFaults();
      EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Internet), 0u);
      EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Offline");
      EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), L"9600");
      EXPECT_EQ(Driver().Writes().size(), 2u) << "both sets are written all the same";
    };
    refresh(false);
    EXPECT_EQ(Boxes().size(), 1u);
    Tick();
    EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Idle") << "the next refresh starts anew";
    refresh(true);
    EXPECT_THAT(Boxes(), IsEmpty());
  }
}

// Reads that the drivers refuse are not a reason to leave the page, or the drivers, without the rest.
TEST_F(StatusWire, BothSetsAreWrittenWhateverTheReadsGave) {
  PageOf();
  web.SetPort(1, {.baudRate = 300});
  Driver().Inject({.operation = DriverFault::Operation::Read});
  Tick();
  EXPECT_THAT(Written(), ElementsAre("Baudrate 9600 -> 300", ""));
  EXPECT_EQ(Driver().Writes().back().Selector(), kBusSet);
  EXPECT_EQ(PageOf().Text(IDC_PORT_BAUD_RATE), L"300");
}

TEST_F(StatusWire, ATickTouchesOnlyTheControlsThatHaveChanged) {
  PortSet().SetNumber("PortType", 1);
  PortSet().SetNumber("EmulateCTSTrue", 1);
  workbench::PortState state{.duplex = 1, .state = 1, .portMode = 1};
  web.SetPort(1, state);
  PageOf();
  EXPECT_GT(Changes(), 0u);
  machine.Calls().ClearLog();
  for (int tick = 0; tick < 3; ++tick) Tick();
  EXPECT_EQ(Changes(), 0u) << "no flicker";
  state.baudRate = 300;
  web.SetPort(1, state);
  Tick();
  EXPECT_EQ(Changes(), 1u) << machine.Calls().LogText();
  EXPECT_EQ(PageOf().Text(IDC_PORT_BAUD_RATE), L"300");
}

}  // namespace
