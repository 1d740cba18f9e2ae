// Whatever answers in the place of a device server: through the wire, the shipped DLL and the open page.
#include "rig_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <vector>

#include "base/resource_ids.h"

namespace {

using workbench::Answer;
using workbench::Framing;
using workbench::HandleKind;

constexpr char kTags[] = "<state>1</state><baud>4800</baud>";

// Tags behind or before as many blanks as it takes.
std::string At(std::size_t offset, std::size_t size) {
  std::string body(size, ' ');
  return body.replace(offset, sizeof(kTags) - 1, kTags);
}
std::string WithZero(std::size_t at) {
  return std::string(kTags).insert(at, 1, '\0');
}

struct Shown {
  const wchar_t* state;
  const wchar_t* baudRate;
  std::uint32_t stored;  // as baud rate in the driver, which had 9600
};
constexpr Shown kNothing = {L"Offline", L"9600", 9600};
constexpr Shown kTold = {L"Connected", L"4800", 4800};  // by kTags

struct AnswerRow {
  const char* name;
  Answer answer;
  Shown shown;
};

const std::vector<AnswerRow>& Rows() {
  using namespace std::chrono_literals;
  constexpr std::size_t kTagBytes = sizeof(kTags) - 1;
  constexpr std::size_t kPiece = 4096;
  static const std::vector<AnswerRow> rows = {
      {"an error page without tags", {.status = 404, .body = "<h1>Not found</h1>"}, kNothing},
      {"an error page with tags counts", {.status = 404, .body = kTags}, kTold},
      {"a server error with tags too", {.status = 500, .body = kTags}, kTold},
      {"no body", {.body = ""}, kNothing},
      {"capital tags", {.body = "<STATE>2</STATE><Baud>300</bAUD>"}, {L"Tunneling", L"300", 300}},
      {"values are folded as well", {.body = "<baud>FAST</baud>"}, {L"Offline", L"fast", 0}},
      {"another kind of content", {.contentType = "image/png", .body = kTags}, kTold},
      {"a zero byte in front", {.body = WithZero(0)}, kNothing},
      {"a zero byte between the tags", {.body = WithZero(16)}, {L"Connected", L"9600", 9600}},
      {"a zero byte at the end", {.body = WithZero(kTagBytes)}, kTold},
      {"one byte less than a piece", {.body = At(kPiece - 1 - kTagBytes, kPiece - 1)}, kTold},
      {"a whole piece", {.body = At(kPiece - kTagBytes, kPiece)}, kTold},
      {"a whole piece, and tags behind it", {.body = At(kPiece, kPiece + kTagBytes)}, kTold},
      {"tags before a second piece", {.body = At(0, kPiece + 1)}, kNothing},
      {"tags cut in two by the pieces", {.body = At(kPiece - 20, 2 * kPiece)}, kNothing},
      {"tags in the first of many pieces", {.body = At(100, 40 * kPiece)}, kNothing},
      {"tags in the last of many pieces", {.body = At(39 * kPiece, 40 * kPiece)}, kTold},
      {"in small pieces", {.body = kTags, .pieceSize = 7, .pause = 3ms}, kTold},
      {"late", {.body = kTags, .delay = 300ms}, kTold},
      {"chunked", {.body = kTags, .framing = Framing::Chunked}, kTold},
      {"until the connection closes", {.body = kTags, .framing = Framing::UntilClose}, kTold},
  };
  return rows;
}

TEST(StatusAnswers, EachEndsOnThePageAsItShould) {
  Rig rig;
  const workbench::ParameterValues before = rig.PortSet();
  const PageSheet sheet(rig);
  for (const AnswerRow& row : Rows()) {
    SCOPED_TRACE(row.name);
    rig.PortSet() = before;
    rig.web.SetAnswer("/p1", row.answer);
    sheet.Click(IDC_PORT_RESTORE_DEFAULTS);  // refreshes, and tells errors
    EXPECT_EQ(sheet.Text(IDC_PORT_STATE), row.shown.state);
    EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), row.shown.baudRate);
    EXPECT_EQ(sheet.Text(IDC_PORT_DATA_BITS), L"8") << "what is not told is as the driver has it";
    EXPECT_EQ(rig.PortSet().Number("Baudrate"), row.shown.stored);
    EXPECT_TRUE(rig.Boxes().empty()) << "an answer is an answer";
    EXPECT_EQ(rig.machine.Calls().OpenCount(HandleKind::Internet), 0u);
    EXPECT_THAT(rig.Misuse(), testing::IsEmpty());
  }
}

TEST(StatusAnswers, AValueAsLongAsADocumentIsShownWhole) {
  Rig rig;
  const std::string value(4096 - sizeof("<baud></baud>") + 1, '7');
  rig.web.SetAnswer("/p1", {.body = "<baud>" + value + "</baud>"});
  const PageSheet sheet(rig);
  EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), std::wstring(value.begin(), value.end()));
  EXPECT_EQ(rig.PortSet().Number("Baudrate"), 0x7FFFFFFFu);
}

TEST(StatusAnswers, BytesAreOfTheSystemsCodePage) {
  std::string value;
  for (int byte = 0x80; byte <= 0xFF; ++byte) value.push_back(static_cast<char>(byte));
  std::array<wchar_t, 257> expected{};
  const int length =
      MultiByteToWideChar(CP_ACP, 0, value.data(), static_cast<int>(value.size()), expected.data(), 256);
  ASSERT_GT(length, 0);
  CharLowerW(expected.data());
  Rig rig;
  rig.web.SetAnswer("/p1", {.body = "<baud>" + value + "</baud>"});
  const PageSheet sheet(rig);
  EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), expected.data());
}

// A short answer after a long one, over one connection that may be kept: nothing of the first shines through.
TEST(StatusAnswers, EachRefreshStartsAnew) {
  Rig rig;
  rig.web.QueueAnswer("/p1", {.body = At(1000, 3000)});
  rig.web.QueueAnswer("/p1", {.body = "x"});
  rig.web.QueueAnswer("/p1", {.body = "<state>2</state>"});
  const PageSheet sheet(rig);
  EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Connected");
  SendMessageW(sheet.Page(), WM_TIMER, 1, 0);
  EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Offline");
  EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), L"4800") << "which the driver has by now";
  SendMessageW(sheet.Page(), WM_TIMER, 1, 0);
  EXPECT_EQ(sheet.Text(IDC_PORT_STATE), L"Tunneling");
}

}  // namespace
