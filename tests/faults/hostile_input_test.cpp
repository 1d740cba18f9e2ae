// Malformed answers of a device server and malformed streams of the drivers, thousands of each, against one
// open page: it neither crashes nor hangs, and what the process holds does not grow.
#include "tests/dll/port_page_rig.h"  // before windows.h

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "base/resource_ids.h"
#include "tests/dll/footprint.h"
#include "tests/faults/run_guard.h"

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

// -- the device server's answers

// clang-format off
const std::vector<std::string> kWordsOfAnswers = {
    "<baud>", "</baud>", "<datasize>", "</datasize>", "<parity>", "</parity>", "<stopbits>", "<flowcontrol>",
    "<duplex>", "</duplex>", "<state>", "</state>", "<portmode>", "</portmode>", "<ctsline>", "<dsrline>",
    "4294967295", "-1", "99999999999999999999", "%s%n", std::string(300, '9'), std::string(5000, ' '),
    std::string(1, '\0'), "\xFF\xFE", "\r\n\r\n", "HTTP/1.1 ", "200", "304", "401", "Content-Length: ",
    "Transfer-Encoding: chunked\r\n", "FFFFFFFF\r\n", "0\r\n\r\n", "-5\r\n", "Location: /p1\r\n",
    "Set-Cookie: a=b\r\n", "Content-Encoding: gzip\r\n"};
// clang-format on

std::string ValidAnswer(Random& random) {
  const PortState state{.baudRate = random(),
                        .parity = random() % 8,
                        .duplex = random() % 4,
                        .state = random() % 4,
                        .portMode = random() % 5};
  static constexpr Framing kFramings[] = {Framing::ContentLength, Framing::Chunked, Framing::UntilClose};
  const Answer answer{.framing = kFramings[random() % 3], .padBefore = random() % 8 == 0 ? 4090u : 0u};
  return Render(answer, {"GET", "/p1", "HTTP/1.1", {}}, StatusDocument(state)).bytes;
}

// -- the drivers' streams

std::string Number(std::uint32_t number) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<char>(number >> (8 * i)));
  return bytes;
}

const std::vector<std::string> kWordsOfStreams = {
    Number(0),           Number(1),          Number(0x7F),
    Number(0x10000),     Number(0x7FFFFFFF), Number(0x80000000),
    Number(0xFFFFFFFE),  Number(0xFFFFFFFF), std::string(200, '\xFF'),
    std::string(1, '\0')};

// Drivers whose current sets are, while `hostile`, what the test says, in the form of bytes.
class HostileDriver : public PortDriver {
 public:
  // A stream, the size that is told before it, and the count that is told with it.
  struct Told {
    std::string stream;
    std::uint32_t size = 0;
    std::uint32_t count = 0;
  };
  bool hostile = false;
  std::array<Told, 2> told;  // by selector

  DriverAnswer Control(std::uint64_t session, const DriverRequest& request) override {
    const bool reads = request.code == kGetCurrentSize || request.code == kGetCurrent;
    if (!hostile || !reads) return PortDriver::Control(session, request);
    const Told& one = told.at(std::to_integer<std::size_t>(request.input[0]) & 1);
    const bool size = request.code == kGetCurrentSize;
    const std::string bytes = size ? Number(one.size) : one.stream;
    const std::size_t length = std::min(bytes.size(), request.output.size());
    std::copy_n(std::as_bytes(std::span(bytes)).begin(), length, request.output.begin());
    return {ERROR_SUCCESS, size ? 4 : one.count};
  }
};

// -- the page

class HostileInput : public testing::Test {
 protected:
  HostileInput() {
    web_.SetPort(1, {});
    web_.Start();
    PointAt(driver_, web_, 1);
    server_ = AddDeviceServer(machine_, {.comNumbers = {7}, .driver = [this](unsigned) { return &driver_; }});
    dll_.emplace(machine_);
    sheet_.emplace(machine_, *dll_, *server_.ports[0]);
  }

  // What is held, and how much more it may be after thousands of inputs: the page's texts, which the last
  // input decides, and what WinINet has under way on other threads. The heap is told only.
  struct Held {
    const char* what;
    std::size_t is;
    long long mostMore;
  };
  std::vector<Held> Holds() {
    const Footprint process = Footprint::Take();
    return {{"blocks of the DLL", static_cast<std::size_t>(machine_.Calls().LiveAllocations()), 20},
            {"its handles", machine_.Calls().OpenHandles().size(), 0},
            {"handles of the process", process.kernelHandles, 20},
            {"GDI objects", process.gdiObjects, 0},
            {"USER objects", process.userObjects, 0},
            {"bytes of the heap", process.heapBytes, 1 << 30}};
  }

  // Prepares and shows the n-th input, again and again; the page refreshes itself by its timer.
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
      machine_.Calls().ClearLog();
      driver_.ClearRecords();
      web_.ClearRequests();
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
    EXPECT_TRUE(machine_.Screen().messageBoxes.empty());
    EXPECT_THAT(machine_.Calls().Violations(), testing::IsEmpty());
  }

  HttpDeviceServer web_;
  HostileDriver driver_;
  Machine machine_;
  DeviceServer server_;
  std::optional<Dll> dll_;
  std::optional<PortSheet> sheet_;
};

TEST_F(HostileInput, AnswersOfTheDeviceServer) {
  ShowAll("malformed answers", [&](Random& random) {
    std::string raw = ValidAnswer(random);
    Mutate(raw, random, kWordsOfAnswers);
    web_.SetAnswer("/p1", {.raw = std::move(raw)});
  });
  web_.ClearAnswers();
  sheet_->Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(sheet_->Text(IDC_PORT_STATE), L"Idle") << "the page works as before";
}

// Without a device server: what a stream says its address is, is not to be called.
TEST_F(HostileInput, StreamsOfTheDrivers) {
  machine_.Calls().Inject({.function = "InternetConnectW", .count = Fault::kEveryLater});
  const ParameterValues port = driver_.Current(kPortSet);
  const ParameterValues bus = driver_.Current(kBusSet);
  driver_.hostile = true;
  ShowAll("malformed streams", [&](Random& random) {
    for (const std::uint32_t selector : {kPortSet, kBusSet}) {
      HostileDriver::Told& told = driver_.told[selector];
      const std::vector<std::byte> valid = ParameterValues(selector).Encode();
      told.stream.assign(reinterpret_cast<const char*>(valid.data()), valid.size());
      Mutate(told.stream, random, kWordsOfStreams);
      const auto length = static_cast<std::uint32_t>(told.stream.size());
      told.size = Below(random, 8) == 0 ? static_cast<std::uint32_t>(Below(random, 2 * length)) : length;
      if (Below(random, 200) == 0) told.size = 0xFFFFFFFF;
      told.count = Below(random, 8) == 0 ? static_cast<std::uint32_t>(random()) : length;
    }
  });
  driver_.hostile = false;
  driver_.Current(kPortSet) = port;  // the page has written back what it was told
  driver_.Current(kBusSet) = bus;
  machine_.Calls().ClearFaults();
  sheet_->Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(sheet_->Text(IDC_PORT_STATE), L"Idle") << "the page works as before";
}

}  // namespace
}  // namespace workbench
