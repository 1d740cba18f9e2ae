// Malformed answers of a device server and malformed streams of the drivers against one open page: it neither
// crashes nor hangs, and what the process holds does not grow.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "base/resource_ids.h"
#include "tests/dll/footprint.h"
#include "tests/faults/run_guard.h"
#include "workbench/rig/page_controls.h"
#include "workbench/rig/page_sheet.h"

namespace workbench {
namespace {

using Random = std::mt19937;

// KDUUI_HOSTILE_INPUTS raises the number, which is small for the sake of ./test.sh; the seed is fixed, so
// that the n-th input is always the same.
unsigned HowMany() {
  const char* text = std::getenv("KDUUI_HOSTILE_INPUTS");
  return std::max(500u, text == nullptr ? 0u : static_cast<unsigned>(std::atoi(text)));
}

std::size_t Below(Random& random, std::size_t limit) {
  return limit == 0 ? 0 : random() % limit;
}

// One to eight changes of a text: a piece of it replaced by another byte, by nothing, by a run of a byte, by
// itself twice or by one of `words`, or the rest of it cut off.
void Mutate(std::string& text, Random& random, const std::vector<std::string>& words) {
  for (std::size_t changes = 1 + Below(random, 8); changes > 0; --changes) {
    const std::size_t at = Below(random, text.size() + 1);
    const std::string piece = text.substr(at, Below(random, 16));
    const std::string run(Below(random, 64), static_cast<char>(random()));
    const std::string& word = words[Below(random, words.size())];
    const std::string puts[] = {run.substr(0, 1), "", run + piece, piece + piece, word, word};
    const std::size_t kind = Below(random, 24);
    if (kind < 23) text.replace(at, kind % 6 == 0 ? 1 : piece.size(), puts[kind % 6]);
    if (kind == 23) text.resize(at);
  }
}

// clang-format off
const std::vector<std::string> kWordsOfAnswers = {
    "<baud>", "</baud>", "<datasize>", "<parity>", "</parity>", "<flowcontrol>", "<state>", "</state>", "<ctsline>",
    "4294967295", "-1", "99999999999999999999", "%s%n", std::string(300, '9'), std::string(5000, ' '),
    std::string(1, '\0'), "\xFF\xFE", "\r\n\r\n", "HTTP/1.1 ", "200", "304", "401", "Content-Length: ",
    "Transfer-Encoding: chunked\r\n", "FFFFFFFF\r\n", "0\r\n\r\n", "-5\r\n", "Location: /p1\r\n",
    "Set-Cookie: a=b\r\n", "Content-Encoding: gzip\r\n"};
// clang-format on

std::string Number(std::uint32_t number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}

const std::vector<std::string> kWordsOfStreams = {
    Number(0),          Number(0x7F),       Number(0x10000),         Number(0x7FFFFFFF),
    Number(0x80000000), Number(0xFFFFFFFF), std::string(200, '\xFF')};

// Drivers whose current sets are, while `hostile`, what the test says, in the form of bytes.
class HostileDriver : public PortDriver {
 public:
  // A stream, the size that is reported before it, and the count that is reported with it.
  struct Report {
    std::string stream;
    std::uint32_t size = 0;
    std::uint32_t count = 0;
  };
  bool hostile = false;
  std::array<Report, 2> reports;  // by selector

  DriverAnswer Control(std::uint64_t session, const DriverRequest& request) override {
    const bool size = request.code == kGetCurrentSize;
    if (!hostile || (!size && request.code != kGetCurrent)) return PortDriver::Control(session, request);
    const Report& report = reports.at(std::to_integer<std::size_t>(request.input[0]) & 1);
    const std::string bytes = size ? Number(report.size) : report.stream;
    const std::size_t length = std::min(bytes.size(), request.output.size());
    std::copy_n(std::as_bytes(std::span(bytes)).begin(), length, request.output.begin());
    return {ERROR_SUCCESS, size ? 4 : report.count};
  }
};

struct DriverOfThePort {
  HostileDriver driver_;  // outlives the machine
};

class HostileInput : public testing::Test, protected DriverOfThePort, protected Rig {
 protected:
  HostileInput() {
    PointAt(driver_, web, 1);
    Port().interfaces.at(0)->driver = &driver_;
    sheet_.emplace(static_cast<Rig&>(*this));
  }

  // What is held, and how much more it may be after all inputs: the page's texts, which the last input
  // decides, and what WinINet has under way on other threads.
  struct Held {
    const char* what;
    std::size_t is;
    long long mostMore;
  };
  std::vector<Held> Holds() {
    return {{"blocks of the DLL", static_cast<std::size_t>(machine.Calls().LiveAllocations()), 20},
            {"its handles", machine.Calls().OpenHandles().size(), 0},
            {"handles of the process", Footprint::Take().kernelHandles, 20}};
  }

  // Prepares and shows one input after the other; the page refreshes itself by its timer.
  template <class Prepare>
  void ShowAll(const char* what, Prepare&& prepare) {
    Random random(20261121);
    const unsigned inputs = HowMany();
    std::vector<Held> early;
    for (unsigned n = 0; n < inputs; ++n) {
      const RunGuard guard(std::string(what) + " " + std::to_string(n));
      prepare(random);
      SendMessageW(sheet_->Page(), WM_TIMER, 1, 0);
      PumpMessages();
      machine.Calls().ClearLog();
      driver_.ClearRecords();
      web.ClearRequests();
      if (n == inputs / 5) early = Holds();
    }
    std::printf("    %u %s, since the %u.:", inputs, what, inputs / 5);
    const std::vector<Held> late = Holds();
    for (std::size_t i = 0; i < late.size(); ++i) {
      const auto more = static_cast<long long>(late[i].is - early[i].is);
      std::printf(" %s %+lld", late[i].what, more);
      EXPECT_LE(more, late[i].mostMore) << late[i].what;
    }
    std::printf("\n");
    EXPECT_TRUE(machine.Screen().messageBoxes.empty());
    EXPECT_THAT(machine.Calls().Violations(), testing::IsEmpty());
  }
  void ExpectThePageWorks() {
    sheet_->Click(IDC_PORT_RESTORE_DEFAULTS);
    EXPECT_EQ(sheet_->Text(IDC_PORT_STATE), L"Idle");
  }

  std::optional<PageSheet> sheet_;
};

TEST_F(HostileInput, AnswersOfTheDeviceServer) {
  ShowAll("malformed answers", [&](Random& random) {
    const PortState state{.baudRate = random(), .parity = random() % 8, .state = random() % 4};
    static constexpr Framing kFramings[] = {Framing::ContentLength, Framing::Chunked, Framing::UntilClose};
    const Answer answer{.framing = kFramings[random() % 3], .padBefore = random() % 8 == 0 ? 4090u : 0u};
    std::string raw = Render(answer, StatusDocument(state));
    Mutate(raw, random, kWordsOfAnswers);
    web.SetAnswer("/p1", {.raw = std::move(raw)});
  });
  web.ClearAnswers();
  ExpectThePageWorks();
}

// Without a device server: what a stream says its address is, is not to be called.
TEST_F(HostileInput, StreamsOfTheDrivers) {
  machine.Calls().Inject({.function = "InternetConnectW", .count = Fault::kEveryLater});
  const ParameterValues sets[] = {driver_.Current(kPortSet), driver_.Current(kBusSet)};
  driver_.hostile = true;
  ShowAll("malformed streams", [&](Random& random) {
    for (const std::uint32_t selector : {kPortSet, kBusSet}) {
      HostileDriver::Report& report = driver_.reports[selector];
      const std::vector<std::byte> valid = ParameterValues(selector).Encode();
      report.stream.assign(reinterpret_cast<const char*>(valid.data()), valid.size());
      Mutate(report.stream, random, kWordsOfStreams);
      const auto length = static_cast<std::uint32_t>(report.stream.size());
      report.size = Below(random, 8) == 0 ? static_cast<std::uint32_t>(Below(random, 2 * length)) : length;
      if (Below(random, 200) == 0) report.size = 0xFFFFFFFF;
      report.count = Below(random, 8) == 0 ? static_cast<std::uint32_t>(random()) : length;
    }
  });
  driver_.hostile = false;
  for (const ParameterValues& set : sets) driver_.Current(set.Selector()) = set;  // the page has written them
  machine.Calls().ClearFaults();
  ExpectThePageWorks();
}

}  // namespace
}  // namespace workbench
