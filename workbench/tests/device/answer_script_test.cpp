// The words of the device server's command line.
#include "workbench/device_server/answer_script.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace workbench {
namespace {

TEST(AnswerScriptTest, ReadsEveryWord) {
  const auto [path, answer] = ParseAnswerScript(
      "/p1 status=404 body=gone capitals framing=chunked pad-before=1 pad-after=2 zero-at=3 delay=4 piece=5 "
      "pause=6 "
      "close-after=0");
  EXPECT_EQ(path, "/p1");
  EXPECT_EQ(answer.status, 404);
  EXPECT_EQ(answer.body, "gone");
  EXPECT_TRUE(answer.capitals);
  EXPECT_EQ(answer.framing, Framing::Chunked);
  EXPECT_EQ(answer.padBefore, 1u);
  EXPECT_EQ(answer.padAfter, 2u);
  EXPECT_EQ(answer.zeroAt, 3u);
  EXPECT_EQ(answer.delay.count(), 4);
  EXPECT_EQ(answer.pieceSize, 5u);
  EXPECT_EQ(answer.pause.count(), 6);
  EXPECT_EQ(answer.closeAfter, 0u);
}

TEST(AnswerScriptTest, ReadsTheStateOfAPort) {
  const auto [number, state] = ParsePortScript("3 baud=19200 parity=5 dsrline=none");
  EXPECT_EQ(number, 3u);
  EXPECT_EQ(StatusDocument(state), StatusDocument({.baudRate = 19200, .parity = 5, .dsrLine = std::nullopt}));
}

TEST(AnswerScriptTest, ComplainsAboutWhatItDoesNotKnow) {
  for (const char* text :
       {"", "p1", "/p1 stauts=404", "/p1 status=4x4", "/p1 framing=none", "/p1 raw=no/such/file"}) {
    EXPECT_THROW((void)ParseAnswerScript(text), std::invalid_argument) << text;
  }
  for (const char* text : {"", "x", "1 bauds=9600", "1 baud", "1 baud=-1"}) {
    EXPECT_THROW((void)ParsePortScript(text), std::invalid_argument) << text;
  }
}

}  // namespace
}  // namespace workbench
