// The device server over real sockets, in every way in which it can be told to answer.
#include "workbench/device_server/http_device_server.h"

#include <gmock/gmock.h>
#include <wininet.h>

#include <array>
#include <future>

namespace workbench {
namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using Clock = std::chrono::steady_clock;

// Everything that comes until the server closes; sends `request` first, in pieces when told so.
std::string Exchange(std::uint16_t port, std::string_view request, std::size_t pieceSize = 0) {
  const SocketLibrary library;
  const UniqueSocket client = ConnectToLoopback(port);
  if (!client) return "(refused)";
  LimitReceiveTime(client.Get(), std::chrono::seconds(10));
  while (!request.empty()) {
    const std::string_view piece = request.substr(0, pieceSize ? pieceSize : request.size());
    if (!SendAll(client.Get(), piece)) return "(send failed)";
    request.remove_prefix(piece.size());
    if (pieceSize) std::this_thread::sleep_for(milliseconds(5));
  }
  std::string answer;
  std::array<char, 4096> buffer;
  while (const auto count = Receive(client.Get(), buffer)) {
    if (*count == 0) return answer;
    answer.append(buffer.data(), *count);
  }
  return answer + "(broken)";
}

std::string Get(std::uint16_t port, const std::string& path) {
  return Exchange(port, "GET " + path + " HTTP/1.1\r\nHost: device\r\nConnection: close\r\n\r\n");
}

std::string BodyOf(const std::string& response) {
  const auto end = response.find("\r\n\r\n");
  return end == std::string::npos ? "(no head)" : response.substr(end + 4);
}

// The body as the system's own HTTP client gets it.
std::string FetchWithWinInet(std::uint16_t port, const std::string& path) {
  const std::string url = "http://127.0.0.1:" + std::to_string(port) + path;
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

  const PortState state_{.baudRate = 115200, .parity = 3, .stopBits = std::nullopt, .state = 1};
  const std::string document_ = StatusDocument(state_);
  HttpDeviceServer server_;
};

TEST_F(DeviceServerTest, ServesTheStateOfAPort) {
  const std::string response = Get(server_.Port(), "/p1");
  EXPECT_THAT(response, StartsWith("HTTP/1.1 200 OK\r\n"));
  EXPECT_THAT(response, HasSubstr("\r\nContent-Length: " + std::to_string(document_.size()) + "\r\n"));
  EXPECT_EQ(BodyOf(response), document_);
  for (const char* part : {"<baud>115200</baud>", "<datasize>8</datasize>", "<parity>3</parity>",
                           "<flowcontrol>1</flowcontrol>", "<duplex>0</duplex>", "<state>1</state>",
                           "<portmode>0</portmode>", "<ctsline>1</ctsline>", "<dsrline>1</dsrline>"}) {
    EXPECT_THAT(document_, HasSubstr(part));
  }
  EXPECT_THAT(document_, testing::Not(HasSubstr("stopbits"))) << "a value that is left out has no tag";
  EXPECT_THAT(Get(server_.Port(), "/serialport1.html"), HasSubstr("Serial port 1"));
  EXPECT_THAT(Get(server_.Port(), "/"), HasSubstr("/serialport1.html"));
  EXPECT_THAT(Get(server_.Port(), "/p2"), StartsWith("HTTP/1.1 404 "));
  EXPECT_THAT(server_.Requests(), SizeIs(4));
}

TEST_F(DeviceServerTest, AnswersAsScripted) {
  std::string capitals = document_;
  for (char& c : capitals) c = static_cast<char>(std::toupper(c));
  std::string withZero = document_;
  withZero.insert(7, 1, '\0');
  const struct {
    const char* name;
    Answer answer;
    std::string status, body;
  } rows[] = {
      {"404 with a body", {.status = 404, .body = "<html>gone</html>"}, "404 Not Found", "<html>gone</html>"},
      {"an empty body", {.body = ""}, "200 OK", ""},
      {"capitals", {.capitals = true}, "200 OK", capitals},
      {"4096 bytes in front", {.padBefore = 4096}, "200 OK", std::string(4096, ' ') + document_},
      {"9000 bytes behind", {.padAfter = 9000}, "200 OK", document_ + std::string(9000, ' ')},
      {"a zero byte inside", {.zeroAt = 7}, "200 OK", withZero},
      {"in pieces", {.pieceSize = 50, .pause = milliseconds(2)}, "200 OK", document_},
      {"without a length", {.framing = Framing::UntilClose}, "200 OK", document_},
      {"in chunks",
       {.framing = Framing::Chunked, .padAfter = 2000},
       "200 OK",
       document_ + std::string(2000, ' ')},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    server_.SetAnswer("/p1", row.answer);
    const std::string response = Get(server_.Port(), "/p1");
    EXPECT_THAT(response, StartsWith("HTTP/1.1 " + row.status + "\r\n"));
    if (row.answer.framing != Framing::Chunked) {
      EXPECT_EQ(BodyOf(response), row.body);
    }
    // The real client of this system's machines agrees on where the body begins and ends.
    EXPECT_EQ(FetchWithWinInet(server_.Port(), "/p1"), row.body);
  }
  server_.ClearAnswers();
  EXPECT_EQ(BodyOf(Get(server_.Port(), "/p1")), document_);
}

TEST_F(DeviceServerTest, ClosesBeforeAndAmidTheAnswer) {
  const std::string whole = Get(server_.Port(), "/p1");
  for (const std::size_t length : {std::size_t{0}, std::size_t{9}, whole.size() - 10}) {
    server_.SetAnswer("/p1", {.closeAfter = length});
    EXPECT_EQ(Get(server_.Port(), "/p1"), whole.substr(0, length));
  }
  server_.SetAnswer("/p1", {.raw = std::string("not\0HTTP", 8)});
  EXPECT_EQ(Get(server_.Port(), "/p1"), std::string("not\0HTTP", 8));
}

TEST_F(DeviceServerTest, AnswersLate) {
  server_.QueueAnswer("/p1", {.delay = milliseconds(300)});
  const auto start = Clock::now();
  EXPECT_EQ(BodyOf(Get(server_.Port(), "/p1")), document_);
  EXPECT_GE(Clock::now() - start, milliseconds(290));
}

TEST_F(DeviceServerTest, ServesOthersWhileOneWaits) {
  server_.QueueAnswer("/p1", {.body = "late", .delay = milliseconds(1500)});
  auto late = std::async(std::launch::async, [this] { return Get(server_.Port(), "/p1"); });
  while (server_.Requests().empty()) std::this_thread::sleep_for(milliseconds(2));
  const auto start = Clock::now();
  EXPECT_EQ(BodyOf(Get(server_.Port(), "/p1")), document_) << "only the first request was scripted";
  EXPECT_EQ(late.wait_for(milliseconds(0)), std::future_status::timeout);
  EXPECT_LT(Clock::now() - start, milliseconds(1500));
  EXPECT_THAT(late.get(), EndsWith("late"));
}

TEST_F(DeviceServerTest, KeepsTheConnectionAsAsked) {
  const std::string twice = Exchange(server_.Port(),
                                     "GET /p1 HTTP/1.1\r\nHost: device\r\n\r\n"
                                     "GET /p1?again HTTP/1.1\r\nHost: device\r\nconnection:close\r\n\r\n");
  EXPECT_THAT(twice, HasSubstr("Connection: keep-alive\r\n"));
  EXPECT_THAT(twice, HasSubstr("Connection: close\r\n"));
  EXPECT_EQ(Exchange(server_.Port(), "GET /p1 HTTP/1.0\r\n\r\n"), Get(server_.Port(), "/p1"));
  const auto requests = server_.Requests();
  ASSERT_THAT(requests, SizeIs(4));
  EXPECT_EQ(requests[0].connection, requests[1].connection);
  EXPECT_NE(requests[1].connection, requests[2].connection);
}

TEST_F(DeviceServerTest, RejectsWhatItDoesNotServe) {
  const struct {
    std::string request;
    const char* status;
  } rows[] = {
      {"GET /p1\r\n\r\n", "400"},
      {"GET p1 HTTP/1.1\r\n\r\n", "400"},
      {"GET /p 1 HTTP/1.1\r\n\r\n", "400"},
      {"GET /p1 HTTP/2.0\r\n\r\n", "400"},
      {"GET /p1 HTTP/1.1\r\nnonsense\r\n\r\n", "400"},
      {"GET /p1 HTTP/1.1\r\nContent-Length: 1x\r\n\r\n", "400"},
      {"POST /p1 HTTP/1.0\r\nContent-Length: 3\r\n\r\nabc", "405"},
      {"GET /p1 HTTP/1.1\r\nX: " + std::string(20000, 'x'), "431"},
  };
  for (const auto& row : rows) {
    EXPECT_THAT(Exchange(server_.Port(), row.request), StartsWith(std::string("HTTP/1.1 ") + row.status))
        << row.request.substr(0, 60);
  }
  const std::string head = Exchange(server_.Port(), "HEAD /p1 HTTP/1.0\r\n\r\n");
  EXPECT_THAT(head, HasSubstr("Content-Length: " + std::to_string(document_.size())));
  EXPECT_THAT(BodyOf(head), IsEmpty());
}

TEST_F(DeviceServerTest, ReadsARequestThatComesInPieces) {
  EXPECT_EQ(BodyOf(Exchange(server_.Port(), "GET /p1 HTTP/1.0\r\nHost: device\r\n\r\n", 3)), document_);
}

TEST_F(DeviceServerTest, StopsInTheMidstOfAnAnswerAndStartsAgain) {
  server_.SetAnswer("/p1", {.delay = std::chrono::minutes(5)});
  auto waiting = std::async(std::launch::async, [this] { return Get(server_.Port(), "/p1"); });
  while (server_.Requests().empty()) std::this_thread::sleep_for(milliseconds(2));
  const std::uint16_t port = server_.Port();
  server_.Stop();
  EXPECT_THAT(waiting.get(), testing::Not(HasSubstr("HTTP/1.1 200")));
  EXPECT_EQ(Get(port, "/p1"), "(refused)");
  server_.ClearAnswers();
  server_.Start(port);
  EXPECT_EQ(BodyOf(Get(port, "/p1")), document_);
  HttpDeviceServer second;
  EXPECT_THROW(second.Start(port), std::runtime_error) << "the port is taken";
}

}  // namespace
}  // namespace workbench
