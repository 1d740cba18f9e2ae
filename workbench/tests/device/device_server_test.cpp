// The device server over real sockets: it answers as its script says.
#include "workbench/device_server/http_device_server.h"

#include <gmock/gmock.h>

#include <array>

namespace workbench {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

// The bytes of the response until the server closes.
std::string Exchange(std::uint16_t port, std::string_view request) {
  const SocketLibrary library;
  const UniqueSocket client = ConnectToLoopback(port);
  if (!client) return "(refused)";
  std::string answer;
  std::array<char, 4096> buffer;
  if (!SendAll(client.Get(), request)) return "(send failed)";
  while (const std::size_t count = Receive(client.Get(), buffer)) answer.append(buffer.data(), count);
  return answer;
}

class DeviceServerTest : public testing::Test {
 protected:
  DeviceServerTest() {
    server_.SetPort(1, state_);
    server_.Start();
  }
  std::string Get() { return Exchange(server_.Port(), "GET /p1 HTTP/1.1\r\n\r\n"); }

  const PortState state_{.baudRate = 115200, .stopBits = std::nullopt};
  const std::string document_ = StatusDocument(state_);
  HttpDeviceServer server_;
};

TEST_F(DeviceServerTest, AnswersAsScripted) {
  EXPECT_THAT(document_, Not(HasSubstr("stopbits"))) << "a value that is left out has no tag";
  server_.SetAnswer("/p1", {.framing = Framing::Chunked, .padBefore = 2000});
  EXPECT_THAT(Get(), AllOf(HasSubstr("\r\n\r\n3e8\r\n   "), EndsWith("\r\n0\r\n\r\n")));
  server_.SetAnswer("/p1", {.framing = Framing::UntilClose, .pieceSize = 50, .pause = milliseconds(2)});
  EXPECT_THAT(Get(), AllOf(Not(HasSubstr("Content-Length")), EndsWith("\r\n\r\n" + document_)));
  server_.SetAnswer("/p1", {.raw = std::string("not\0HTTP", 8)});
  EXPECT_EQ(Get(), std::string("not\0HTTP", 8));
  server_.SetAnswer("/p1", {.status = 404, .body = "gone"});
  EXPECT_THAT(Get(), AllOf(HasSubstr(" 404 "), EndsWith("\r\n\r\ngone")));
  server_.ClearAnswers();
  EXPECT_THAT(Get(), EndsWith("\r\n\r\n" + document_));
  EXPECT_EQ(server_.Requests().size(), 5u);
}

}  // namespace
}  // namespace workbench
