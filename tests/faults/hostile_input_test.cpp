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

// What the page may hold more after thousands of inputs: its texts, which the last input decides; and what
// WinINet has under way on other threads.
constexpr std::int64_t kMostMoreBlocks = 20;
constexpr std::size_t kMostMoreHandles = 20;

// KDUUI_HOSTILE_INPUTS raises the number, which is small for the sake of ./test.sh; the seed is fixed, so
// that the n-th input is always the same.
unsigned HowMany() {
  const char* text = std::getenv("KDUUI_HOSTILE_INPUTS");
  return std::max(500u, text == nullptr ? 0u : static_cast<unsigned>(std::atoi(text)));
}

std::size_t Below(Random& random, std::size_t limit) {
  return limit == 0 ? 0 : random() % limit;
}

// One to eight changes of a text: bytes replaced, taken out, put in, doubled, cut off, or a piece of one of
// `words` over what was there.
template <class Text>
void Mutate(Text& text, Random& random, const std::vector<Text>& words) {
  for (std::size_t changes = 1 + Below(random, 8); changes > 0; --changes) {
    const auto at = static_cast<std::ptrdiff_t>(Below(random, text.size() + 1));
    const auto length =
        static_cast<std::ptrdiff_t>(std::min(Below(random, 16), text.size() - static_cast<std::size_t>(at)));
    const auto from = text.begin() + at;
    const auto byte = static_cast<typename Text::value_type>(random() & 0xFF);
    switch (Below(random, 7)) {
      case 0:
        if (from != text.end()) *from = byte;
        break;
      case 1:
        text.erase(from, from + length);
        break;
      case 2:
        text.insert(from, Below(random, 64), byte);
        break;
      case 3: {
        const Text piece(from, from + length);
        text.insert(text.begin() + static_cast<std::ptrdiff_t>(Below(random, text.size())), piece.begin(),
                    piece.end());
        break;
      }
      case 4:
        if (Below(random, 4) == 0) text.erase(from, text.end());
        break;
      default: {
        const Text& word = words[Below(random, words.size())];
        text.erase(from, from + length);
        text.insert(text.begin() + at, word.begin(), word.end());
        break;
      }
    }
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

using Bytes = std::vector<std::byte>;

Bytes Number(std::uint32_t number) {
  Bytes bytes;
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<std::byte>(number >> (8 * i)));
  return bytes;
}

// clang-format off
const std::vector<Bytes> kWordsOfStreams = {
    Number(0), Number(1), Number(0x7F), Number(0x10000), Number(0x7FFFFFFF), Number(0x80000000),
    Number(0xFFFFFFFE), Number(0xFFFFFFFF), Bytes(200, std::byte{0xFF}), Bytes(1, std::byte{0})};
// clang-format on

// Drivers whose current sets are what the test says, in the form of bytes.
class HostileDriver : public DriverEndpoint {
 public:
  // A stream, the size that is told before it, and the count that is told with it.
  struct Told {
    Bytes stream;
    std::uint32_t size = 0;
    std::uint32_t count = 0;
  };
  PortDriver honest;  // takes what is written
  bool hostile = false;
  std::array<Told, 2> told;  // by selector

  DWORD Open(std::uint64_t session, const DriverOpen& open) override { return honest.Open(session, open); }
  void Close(std::uint64_t session) override { honest.Close(session); }
  DriverAnswer Control(std::uint64_t session, const DriverRequest& request) override {
    const bool reads = request.code == kGetCurrentSize || request.code == kGetCurrent;
    if (!hostile || !reads) return honest.Control(session, request);
    const Told& one = told.at(std::to_integer<std::size_t>(request.input[0]) & 1);
    if (request.code == kGetCurrentSize) {
      std::ranges::copy(Number(one.size), request.output.begin());
      return {ERROR_SUCCESS, 4};
    }
    const std::size_t length = std::min(one.stream.size(), request.output.size());
    std::copy_n(one.stream.begin(), length, request.output.begin());
    return {ERROR_SUCCESS, one.count};
  }
};

// -- the page

class HostileInput : public testing::Test {
 protected:
  HostileInput() {
    web_.SetPort(1, {});
    web_.Start();
    PointAt(driver_.honest, web_, 1);
    server_ = AddDeviceServer(machine_, {.comNumbers = {7}, .driver = [this](unsigned) { return &driver_; }});
    dll_.emplace(machine_);
    sheet_.emplace(machine_, *dll_, *server_.ports[0]);
  }

  struct Held {
    std::int64_t blocks = 0;  // of the DLL
    std::size_t handles = 0;  // of the DLL
    Footprint process;
  };
  Held Holds() {
    return {machine_.Calls().LiveAllocations(), machine_.Calls().OpenHandles().size(), Footprint::Take()};
  }

  // Prepares and shows the n-th input, again and again; the page refreshes itself by its timer.
  template <class Prepare>
  void ShowAll(const char* what, Prepare&& prepare) {
    Random random(20261121);
    const unsigned inputs = HowMany();
    Held early;
    for (unsigned n = 0; n < inputs; ++n) {
      const RunGuard guard(std::string(what) + " " + std::to_string(n));
      prepare(random);
      SendMessageW(sheet_->Page(), WM_TIMER, 1, 0);
      PumpMessages();
      machine_.Calls().ClearLog();
      driver_.honest.ClearRecords();
      web_.ClearRequests();
      if (n == inputs / 5) early = Holds();
    }
    const Held late = Holds();
    const auto more = [](std::size_t is, std::size_t was) { return static_cast<long long>(is - was); };
    const Footprint &is = late.process, &was = early.process;
    std::printf("    %u %s, since the %u.: blocks of the DLL %+lld, its handles %+lld\n", inputs, what,
                inputs / 5, static_cast<long long>(late.blocks - early.blocks),
                more(late.handles, early.handles));
    std::printf(
        "      of the process: handles %+lld, GDI objects %+lld, USER objects %+lld, heap %+lld bytes\n",
        more(is.kernelHandles, was.kernelHandles), more(is.gdiObjects, was.gdiObjects),
        more(is.userObjects, was.userObjects), more(is.heapBytes, was.heapBytes));
    EXPECT_LE(late.blocks, early.blocks + kMostMoreBlocks);
    EXPECT_EQ(late.handles, early.handles);
    EXPECT_LE(is.kernelHandles, was.kernelHandles + kMostMoreHandles);
    EXPECT_LE(is.gdiObjects, was.gdiObjects);
    EXPECT_LE(is.userObjects, was.userObjects);
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
  const ParameterValues port = driver_.honest.Current(kPortSet);
  const ParameterValues bus = driver_.honest.Current(kBusSet);
  driver_.hostile = true;
  ShowAll("malformed streams", [&](Random& random) {
    for (const std::uint32_t selector : {kPortSet, kBusSet}) {
      HostileDriver::Told& told = driver_.told[selector];
      told.stream = ParameterValues(selector).Encode();
      Mutate(told.stream, random, kWordsOfStreams);
      const auto length = static_cast<std::uint32_t>(told.stream.size());
      told.size = Below(random, 8) == 0 ? static_cast<std::uint32_t>(Below(random, 2 * length)) : length;
      if (Below(random, 200) == 0) told.size = 0xFFFFFFFF;
      told.count = Below(random, 8) == 0 ? static_cast<std::uint32_t>(random()) : length;
    }
  });
  driver_.hostile = false;
  driver_.honest.Current(kPortSet) = port;  // the page has written back what it was told
  driver_.honest.Current(kBusSet) = bus;
  machine_.Calls().ClearFaults();
  sheet_->Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(sheet_->Text(IDC_PORT_STATE), L"Idle") << "the page works as before";
}

}  // namespace
}  // namespace workbench
