// What the port page asks of WinINet, in which order and with which arguments, and what is closed when a
// step of it fails.
#include "rig_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wininet.h>

#include <map>
#include <string>
#include <vector>

#include "base/resource_ids.h"

namespace {

using workbench::Call;
using workbench::Fault;
using workbench::HandleKind;

constexpr const char* kSession = "InternetOpenW";
constexpr const char* kConnect = "InternetConnectW";
constexpr const char* kOpenRequest = "HttpOpenRequestW";
constexpr const char* kSend = "HttpSendRequestW";
constexpr const char* kRead = "InternetReadFile";
constexpr const char* kClose = "InternetCloseHandle";

void Tick(const PageSheet& sheet) {
  SendMessageW(sheet.Page(), WM_TIMER, 1, 0);
}

// The only call of a function.
Call TheCall(Rig& rig, const char* function) {
  const std::vector<Call> calls = rig.machine.Calls().CallsOf(function);
  EXPECT_EQ(calls.size(), 1u) << function;
  return calls.size() == 1 ? calls[0] : Call{};
}

std::vector<std::uint64_t> Numbers(const Call& call) {
  std::vector<std::uint64_t> numbers;
  for (const workbench::CallArgument& argument : call.arguments) numbers.push_back(argument.value);
  return numbers;
}

std::vector<std::uint64_t> Closed(Rig& rig) {
  std::vector<std::uint64_t> handles;
  for (const Call& call : rig.machine.Calls().CallsOf(kClose)) handles.push_back(call.Number(0));
  return handles;
}

class StatusWire : public testing::Test {
 protected:
  StatusWire() { rig.machine.Calls().ClearLog(); }
  // Whatever a test does: nothing of WinINet stays open, and no interface was misused.
  void TearDown() override {
    EXPECT_EQ(rig.machine.Calls().OpenCount(HandleKind::Internet), 0u);
    EXPECT_THAT(rig.Misuse(), testing::IsEmpty());
  }

  Rig rig;
};

TEST_F(StatusWire, FiveStepsAndThreeHandles) {
  using testing::_;
  using testing::ElementsAre;
  const PageSheet sheet(rig);
  const Call session = TheCall(rig, kSession);
  EXPECT_EQ(session.Text(0), L"dll_tests") << "the host's file name without directory and extension";
  EXPECT_THAT(Numbers(session), ElementsAre(_, INTERNET_OPEN_TYPE_DIRECT, 0, 0, 0x4400000));

  const Call connection = TheCall(rig, kConnect);
  EXPECT_EQ(connection.Text(1), L"127.0.0.1");
  EXPECT_THAT(Numbers(connection), ElementsAre(session.result, _, rig.web.Port(), 0, 0, INTERNET_SERVICE_HTTP,
                                               0, testing::Ne(0u)));

  const Call request = TheCall(rig, kOpenRequest);
  EXPECT_EQ(request.Text(1), L"GET");
  EXPECT_EQ(request.Text(2), L"/p1");
  EXPECT_THAT(Numbers(request), ElementsAre(connection.result, _, _, 0, 0, _, 0x400000, testing::Ne(0u)));
  EXPECT_NE(request.Number(7), connection.Number(7)) << "each object is its own context";

  const Call send = TheCall(rig, kSend);
  EXPECT_EQ(send.Number(0), request.result);
  EXPECT_THAT(Numbers(send), ElementsAre(_, 0, 0xFFFFFFFF, 0, 0));

  const std::vector<Call> reads = rig.machine.Calls().CallsOf(kRead);
  ASSERT_EQ(reads.size(), 2u) << "the document, and its end";
  EXPECT_THAT(Numbers(reads[0]), ElementsAre(request.result, _, 4096, testing::Ne(0u)));
  EXPECT_EQ(reads[0].Number(1), reads[1].Number(1)) << "always into the start of the one buffer";

  EXPECT_THAT(Closed(rig), ElementsAre(request.result, connection.result, session.result));
  EXPECT_THAT(rig.machine.Calls().OrderOf({kSession, kConnect, kOpenRequest, kSend, kRead, kClose}),
              ElementsAre(kSession, kConnect, kOpenRequest, kSend, kRead, kRead, kClose, kClose, kClose));
}

TEST_F(StatusWire, TheDeviceServerSeesAPlainGet) {
  const PageSheet sheet(rig);
  const auto requests = rig.web.Requests();
  ASSERT_EQ(requests.size(), 1u);
  const workbench::HttpRequest& request = requests[0].request;
  EXPECT_EQ(request.method, "GET");
  EXPECT_EQ(request.target, "/p1");
  EXPECT_THAT(request.head, testing::HasSubstr("\r\nAccept: */*\r\n"));
  EXPECT_THAT(request.head, testing::HasSubstr("\r\nUser-Agent: dll_tests\r\n"));
  EXPECT_THAT(request.head, testing::Not(testing::HasSubstr("Content-Type")));
}

struct FailureRow {
  const char* function;
  std::uint64_t from;   // which call of it
  std::size_t handles;  // that are open by then
};

constexpr FailureRow kFailures[] = {
    {kSession, 1, 0}, {kConnect, 1, 1}, {kOpenRequest, 1, 2}, {kSend, 1, 3}, {kRead, 1, 3}, {kRead, 2, 3},
};

TEST_F(StatusWire, AStepThatFailsClosesWhatIsOpenAndIsToldUnlessOnATick) {
  const PageSheet sheet(rig);
  for (const FailureRow& row : kFailures) {
    SCOPED_TRACE(std::string(row.function) + " " + std::to_string(row.from));
    rig.machine.Calls().ClearLog();
    rig.Driver().ClearRecords();
    rig.Boxes().clear();
    rig.machine.Calls().Inject({.function = row.function, .from = row.from});
    sheet.Click(IDC_PORT_RESTORE_DEFAULTS);
    rig.machine.Calls().ClearFaults();

    std::vector<std::uint64_t> opened;
    for (const char* opener : {kOpenRequest, kConnect, kSession}) {
      for (const Call& call : rig.machine.Calls().CallsOf(opener)) {
        if (call.succeeded) opened.push_back(call.result);
      }
    }
    EXPECT_EQ(opened.size(), row.handles);
    EXPECT_EQ(Closed(rig), opened) << "in the reverse order of opening, each once";
    EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Offline");
    EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), L"9600");
    EXPECT_EQ(rig.Boxes().size(), 1u);
    EXPECT_EQ(rig.Driver().Writes().size(), 2u) << "both sets are written all the same";

    Tick(sheet);
    EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Idle") << "the next refresh starts anew";

    rig.machine.Calls().Inject({.function = row.function, .from = row.from});
    Tick(sheet);
    rig.machine.Calls().ClearFaults();
    EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Offline");
    EXPECT_EQ(rig.Boxes().size(), 1u) << "a tick tells nothing";
  }
}

TEST_F(StatusWire, TheWarningComesAfterTheHandlesAreClosed) {
  rig.web.Stop();
  std::size_t openUnderTheBox = 99;
  rig.machine.Screen().AnswerBy([&](const workbench::MessageBoxRecord&) {
    openUnderTheBox = rig.machine.Calls().OpenCount(HandleKind::Internet);
    return IDOK;
  });
  const PageSheet sheet(rig);
  EXPECT_EQ(openUnderTheBox, 0u) << "a person may leave the box up for hours";
}

// Reads that the drivers refuse are not a reason to leave the page, or the drivers, without the rest.
TEST_F(StatusWire, SetsAreWrittenWhateverTheReadsSaid) {
  const PageSheet sheet(rig);
  rig.Driver().ClearRecords();
  rig.web.SetPort(1, {.baudRate = 300});
  rig.Driver().Inject({.operation = workbench::DriverFault::Operation::Read});
  Tick(sheet);
  const auto writes = rig.Driver().Writes();
  ASSERT_EQ(writes.size(), 2u);
  EXPECT_EQ(writes[0].Selector(), workbench::kPortSet);
  EXPECT_EQ(writes[0].Number("Baudrate"), 300u);
  EXPECT_EQ(writes[1].Selector(), workbench::kBusSet);
  EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), L"300");
}

// The calls that change what a window shows.
std::size_t Changes(Rig& rig) {
  std::size_t count = 0;
  for (const char* function : {"SetWindowTextW", "SetDlgItemTextW", "ShowWindow", "EnableWindow"}) {
    count += rig.machine.Calls().CountOf(function);
  }
  for (const Call& call : rig.machine.Calls().CallsOf("SendMessageW")) {
    count += call.Number(1) == BM_SETCHECK || call.Number(1) == WM_SETTEXT ? 1 : 0;
  }
  return count;
}

TEST_F(StatusWire, ATickTouchesOnlyWhatHasChanged) {
  rig.PortSet().SetNumber("PortType", 1);
  rig.PortSet().SetNumber("EmulateCTSTrue", 1);
  const workbench::PortState state{.duplex = 1, .state = 1, .portMode = 1};
  rig.web.SetPort(1, state);
  const PageSheet sheet(rig);
  EXPECT_GT(Changes(rig), 0u);

  rig.machine.Calls().ClearLog();
  for (int tick = 0; tick < 3; ++tick) Tick(sheet);
  EXPECT_EQ(Changes(rig), 0u) << "no flicker";

  workbench::PortState changed = state;
  changed.baudRate = 300;
  rig.web.SetPort(1, changed);
  Tick(sheet);
  EXPECT_EQ(Changes(rig), 1u) << rig.machine.Calls().LogText();
  EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), L"300");
}

}  // namespace
