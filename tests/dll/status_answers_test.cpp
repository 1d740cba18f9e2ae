// Whatever answers in the place of a device server: through the wire, the shipped DLL and the open page.
#include "page_test.h"

#include <chrono>

namespace {

using workbench::Answer;
using workbench::Framing;

class StatusAnswers : public PageTest {};

constexpr char kTags[] = "<state>1</state><baud>4800</baud>";
constexpr std::size_t kTagBytes = sizeof(kTags) - 1;
constexpr std::size_t kPiece = 4096;  // what the DLL reads at once

// Tags behind or before as many blanks as it takes.
std::string At(std::size_t offset, std::size_t size) {
  std::string body(size, ' ');
  return body.replace(offset, kTagBytes, kTags);
}
std::string Baud(const std::string& value) {
  return "<baud>" + value + "</baud>";
}

// How bytes of the system's code page are shown: in lower case.
std::wstring ShownAnsi(const char* bytes) {
  wchar_t text[16] = {};
  MultiByteToWideChar(CP_ACP, 0, bytes, -1, text, ARRAYSIZE(text));
  return CharLowerW(text);
}

struct Shown {
  std::wstring state, baudRate;
  std::uint32_t stored;  // as baud rate in the driver, which had 9600
};
const Shown kNothing = {L"Offline", L"9600", 9600};
const Shown kTagged = {L"Connected", L"4800", 4800};  // by kTags

struct Row {
  const char* name;
  Answer answer;
  Shown shown = kTagged;
};

std::vector<Row> Rows() {
  using namespace std::chrono_literals;
  const std::string longest(kPiece - Baud("").size(), '7');
  return {
      {"an error page without tags", {.status = 404, .body = "<h1>Not found</h1>"}, kNothing},
      {"an error page with tags counts", {.status = 404, .body = kTags}},
      {"no body", {.body = ""}, kNothing},
      {"capital tags", {.body = "<STATE>2</STATE><Baud>300</bAUD>"}, {L"Tunneling", L"300", 300}},
      {"values are folded as well", {.body = Baud("FAST")}, {L"Offline", L"fast", 0}},
      {"bytes of the system's code page", {.body = Baud("\xC9\xF6")}, {L"Offline", ShownAnsi("\xC9\xF6"), 0}},
      {"another kind of content", {.contentType = "image/png", .body = kTags}},
      {"a zero byte between the tags",
       {.body = std::string(kTags).insert(16, 1, '\0')},
       {L"Connected", L"9600", 9600}},
      {"a value as long as a piece",
       {.body = Baud(longest)},
       {L"Offline", std::wstring(longest.begin(), longest.end()), 0x7FFFFFFF}},
      {"tags behind a whole piece", {.body = At(kPiece, kPiece + kTagBytes)}},
      {"tags cut in two by the pieces", {.body = At(kPiece - 20, 2 * kPiece)}, kNothing},
      {"in small pieces", {.body = kTags, .pieceSize = 7, .pause = 3ms}},
      {"chunked", {.body = kTags, .framing = Framing::Chunked}},
      {"until the connection closes", {.body = kTags, .framing = Framing::UntilClose}},
  };
}

TEST_F(StatusAnswers, EachAnswerIsShownAndStoredAsFarAsItHasTags) {
  const workbench::ParameterValues before = PortSet();
  const PageSheet& sheet = PageOf();
  for (const Row& row : Rows()) {
    SCOPED_TRACE(row.name);
    PortSet() = before;
    web.SetAnswer("/p1", row.answer);
    sheet.Click(IDC_PORT_RESTORE_DEFAULTS);  // refreshes, and reports errors
    EXPECT_EQ(sheet.Text(IDC_PORT_STATE), row.shown.state);
    EXPECT_EQ(sheet.Text(IDC_PORT_BAUD_RATE), row.shown.baudRate);
    EXPECT_EQ(sheet.Text(IDC_PORT_DATA_BITS), L"8") << "what the answer lacks is as the driver has it";
    EXPECT_EQ(PortSet().Number("Baudrate"), row.shown.stored);
    EXPECT_THAT(Boxes(), IsEmpty()) << "an answer is an answer";
    EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Internet), 0u);
  }
}

}  // namespace
