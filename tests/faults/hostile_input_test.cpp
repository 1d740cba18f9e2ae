// Malformed answers of a device server, through the system's own HTTP client, against one open page: it
// neither crashes nor hangs, and what the DLL holds does not grow.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "base/resource_ids.h"
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

// clang-format off
const std::vector<std::string> kWords = {
    "<baud>", "</baud>", "<datasize>", "<parity>", "</parity>", "<flowcontrol>", "<state>", "</state>", "<ctsline>",
    "4294967295", "-1", "99999999999999999999", "%s%n", std::string(300, '9'), std::string(5000, ' '),
    std::string(1, '\0'), "\xFF\xFE", "\r\n\r\n", "HTTP/1.1 ", "200", "304", "401", "Content-Length: ",
    "Transfer-Encoding: chunked\r\n", "FFFFFFFF\r\n", "0\r\n\r\n", "-5\r\n", "Location: /p1\r\n",
    "Set-Cookie: a=b\r\n", "Content-Encoding: gzip\r\n"};
// clang-format on

// One to eight changes of a text: a piece of it replaced by another byte, by nothing, by a run of a byte, by
// itself twice or by one of the words above, or the rest of it cut off.
void Mutate(std::string& text, Random& random) {
  for (std::size_t changes = 1 + random() % 8; changes > 0; --changes) {
    const std::size_t at = random() % (text.size() + 1);
    const std::string piece = text.substr(at, random() % 16);
    const std::string run(random() % 64, static_cast<char>(random()));
    const std::string& word = kWords[random() % kWords.size()];
    const std::string puts[] = {run.substr(0, 1), "", run + piece, piece + piece, word, word};
    const std::size_t kind = random() % 24;
    if (kind < 23) text.replace(at, kind % 6 == 0 ? 1 : piece.size(), puts[kind % 6]);
    if (kind == 23) text.resize(at);
  }
}

class HostileInput : public testing::Test, protected Rig {
 protected:
  // The page refreshes itself by its timer, and sees the answer.
  void Show(std::string answer) {
    web.SetAnswer("/p1", {.raw = std::move(answer)});
    SendMessageW(sheet_.Page(), WM_TIMER, 1, 0);
    PumpMessages();
    machine.Calls().ClearLog();
    Driver().ClearRecords();
    web.ClearRequests();
  }

  PageSheet sheet_{*this};
};

TEST_F(HostileInput, AnswersOfTheDeviceServerLeaveAPageThatWorks) {
  Random random(20261121);
  const unsigned inputs = HowMany();
  std::int64_t early = 0;
  for (unsigned n = 0; n < inputs; ++n) {
    const RunGuard guard("malformed answer " + std::to_string(n));
    const PortState state{.baudRate = random(), .parity = random() % 8, .state = random() % 4};
    static constexpr Framing kFramings[] = {Framing::ContentLength, Framing::Chunked, Framing::UntilClose};
    const Answer answer{.framing = kFramings[random() % 3], .padBefore = random() % 8 == 0 ? 4090u : 0u};
    std::string raw = Render(answer, StatusDocument(state));
    Mutate(raw, random);
    Show(std::move(raw));
    if (n == inputs / 5) early = machine.Calls().LiveAllocations();
  }
  const std::int64_t more = machine.Calls().LiveAllocations() - early;
  std::printf("    %u malformed answers, since the %u.: blocks %+lld\n", inputs, inputs / 5,
              static_cast<long long>(more));
  EXPECT_LE(more, 20) << "the page's texts, which the last input decides";
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Internet), 0u);
  EXPECT_TRUE(Boxes().empty());
  EXPECT_THAT(machine.Calls().Violations(), testing::IsEmpty());
  web.ClearAnswers();
  sheet_.Click(IDC_PORT_RESTORE_DEFAULTS);
  EXPECT_EQ(sheet_.Text(IDC_PORT_STATE), L"Idle");
}

}  // namespace
}  // namespace workbench
