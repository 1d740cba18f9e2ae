// The device server over real sockets, as it is told to answer: what the system's own HTTP client makes of
// it.
#include "workbench/device_server/http_device_server.h"

#include <gmock/gmock.h>
#include <wininet.h>

#include <array>
#include <future>

namespace workbench {
namespace {

using std::chrono::milliseconds;

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

std::string FetchWithWinInet(std::uint16_t port) {
  const std::string url = "http://127.0.0.1:" + std::to_string(port) + "/p1";
  const HINTERNET session = InternetOpenA("test", INTERNET_OPEN_TYPE_DIRECT, nullptr, nullptr, 0);
  const HINTERNET file = InternetOpenUrlA(session, url.c_str(), nullptr, 0, INTERNET_FLAG_RELOAD, 0);
  std::string body = file ? "" : "(failed)";
  std::array<char, 4096> buffer;
  DWORD count = 0;
  while (file && InternetReadFile(file, buffer.data(), buffer.size(), &count) && count)
    body.append(buffer.data(), count);
  InternetCloseHandle(file);
  InternetCloseHandle(session);
  return body;
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
  EXPECT_THAT(document_, testing::Not(testing::HasSubstr("stopbits")))
      << "a value that is left out has no tag";
  const struct {
    const char* name;
    Answer answer;
    std::string body;
  } rows[] = {
      {"404 with a body", {.status = 404, .body = "<html>gone</html>"}, "<html>gone</html>"},
      {"an empty body", {.body = ""}, ""},
      {"4096 bytes in front", {.padBefore = 4096}, std::string(4096, ' ') + document_},
      {"in pieces", {.pieceSize = 50, .pause = milliseconds(2)}, document_},
      {"late", {.delay = milliseconds(100)}, document_},
      {"without a length", {.framing = Framing::UntilClose}, document_},
      {"in chunks", {.framing = Framing::Chunked, .padBefore = 2000}, std::string(2000, ' ') + document_},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    server_.SetAnswer("/p1", row.answer);
    EXPECT_EQ(FetchWithWinInet(server_.Port()), row.body);
  }
  server_.QueueAnswer("/p1", {.body = "once"});
  server_.ClearAnswers();
  EXPECT_EQ(FetchWithWinInet(server_.Port()), document_);
  EXPECT_EQ(server_.Requests().size(), std::size(rows) + 1);
}

TEST_F(DeviceServerTest, ClosesBeforeAndAmidTheAnswer) {
  const std::string whole = Get();
  for (const std::size_t length : {std::size_t{0}, std::size_t{9}, whole.size() - 10}) {
    server_.SetAnswer("/p1", {.closeAfter = length});
    EXPECT_EQ(Get(), whole.substr(0, length));
  }
  server_.SetAnswer("/p1", {.raw = std::string("not\0HTTP", 8)});
  EXPECT_EQ(Get(), std::string("not\0HTTP", 8));
}

TEST_F(DeviceServerTest, StopsInTheMidstOfAnAnswerAndStartsAgain) {
  server_.SetAnswer("/p1", {.delay = std::chrono::minutes(5)});
  auto waiting = std::async(std::launch::async, [this] { return Get(); });
  while (server_.Requests().empty()) std::this_thread::sleep_for(milliseconds(2));
  server_.Stop();
  EXPECT_EQ(waiting.get(), "");
  EXPECT_EQ(Get(), "(refused)");
  server_.ClearAnswers();
  server_.Start();
  EXPECT_THAT(Get(), testing::EndsWith(document_));
}

}  // namespace
}  // namespace workbench
