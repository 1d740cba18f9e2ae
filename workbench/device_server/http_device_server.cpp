#include "workbench/device_server/http_device_server.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace workbench {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kLargestHead = 16 * 1024;
constexpr std::chrono::seconds kIdleLimit{30};
constexpr milliseconds kStopCheck{50};

// Ends the sending side and takes what still comes in. Closing a socket with unread bytes would reset the
// connection, and the reset may overtake the end of the answer.
void CloseGracefully(SOCKET socket) {
  shutdown(socket, SD_SEND);
  LimitReceiveTime(socket, std::chrono::seconds(2));
  std::array<char, 1024> rest{};
  while (Receive(socket, rest).value_or(0) > 0) {
  }
}

}  // namespace

HttpDeviceServer::HttpDeviceServer() = default;

HttpDeviceServer::~HttpDeviceServer() {
  Stop();
}

void HttpDeviceServer::Start(std::uint16_t port) {
  Stop();
  UniqueSocket listener = ListenOnLoopback(port);
  const std::scoped_lock hold(lock_);
  port_ = LocalPort(listener.Get());
  listener_ = std::move(listener);
  stopping_ = false;
  acceptor_ = std::thread([this] { AcceptConnections(); });
}

void HttpDeviceServer::Stop() {
  {
    const std::scoped_lock hold(lock_);
    stopping_ = true;
    listener_.Reset();
    // The sockets stay the threads' to close; shut down, their calls return.
    for (Connection& connection : connections_) shutdown(connection.socket.Get(), SD_BOTH);
  }
  stopSignal_.notify_all();
  if (acceptor_.joinable()) acceptor_.join();
  for (Connection& connection : connections_) connection.thread.join();
  connections_.clear();
}

std::uint16_t HttpDeviceServer::Port() const {
  const std::scoped_lock hold(lock_);
  return port_;
}

void HttpDeviceServer::SetPort(unsigned portNumber, const PortState& state) {
  const std::scoped_lock hold(lock_);
  ports_[portNumber] = state;
}

PortState HttpDeviceServer::PortAt(unsigned portNumber) const {
  const std::scoped_lock hold(lock_);
  return ports_.at(portNumber);
}

void HttpDeviceServer::SetAnswer(const std::string& path, const Answer& answer) {
  const std::scoped_lock hold(lock_);
  answers_[path] = answer;
}

void HttpDeviceServer::QueueAnswer(const std::string& path, const Answer& answer) {
  const std::scoped_lock hold(lock_);
  queued_[path].push_back(answer);
}

void HttpDeviceServer::ClearAnswers() {
  const std::scoped_lock hold(lock_);
  answers_.clear();
  queued_.clear();
}

std::vector<LoggedRequest> HttpDeviceServer::Requests() const {
  const std::scoped_lock hold(lock_);
  return requests_;
}

void HttpDeviceServer::ClearRequests() {
  const std::scoped_lock hold(lock_);
  requests_.clear();
}

void HttpDeviceServer::Verbose(bool verbose) {
  const std::scoped_lock hold(lock_);
  verbose_ = verbose;
}

void HttpDeviceServer::AcceptConnections() {
  SOCKET listener = INVALID_SOCKET;
  {
    const std::scoped_lock hold(lock_);
    listener = listener_.Get();
  }
  for (;;) {
    UniqueSocket client(accept(listener, nullptr, nullptr));
    JoinFinished();
    const std::scoped_lock hold(lock_);
    if (stopping_ || !client) return;
    Connection& connection = connections_.emplace_back();
    connection.number = ++lastConnection_;
    connection.socket = std::move(client);
    connection.thread = std::thread([this, &connection] { Serve(connection); });
  }
}

void HttpDeviceServer::JoinFinished() {
  std::list<Connection> finished;
  {
    const std::scoped_lock hold(lock_);
    for (auto at = connections_.begin(); at != connections_.end();) {
      const auto here = at++;
      if (here->finished) finished.splice(finished.end(), connections_, here);
    }
  }
  for (Connection& connection : finished) connection.thread.join();
}

void HttpDeviceServer::Serve(Connection& connection) {
  std::string received;
  while (ServeNext(connection, received)) {
  }
  const std::scoped_lock hold(lock_);
  connection.socket.Reset();
  connection.finished = true;
}

// Reads one request and answers it; false when the connection is done. `received` keeps what came in
// beyond the request.
bool HttpDeviceServer::ServeNext(const Connection& connection, std::string& received) {
  const auto receiveMore = [&] { return ReceiveMore(connection.socket.Get(), received); };
  std::size_t end = std::string::npos;
  while ((end = received.find("\r\n\r\n")) == std::string::npos) {
    if (received.size() > kLargestHead) return Reject(connection, 431);
    if (!receiveMore()) return false;
  }
  const auto request = ParseRequestHead(std::string_view(received).substr(0, end));
  received.erase(0, end + 4);
  const auto bodyLength = request ? request->BodyLength() : std::nullopt;
  if (!bodyLength || *bodyLength > kLargestHead) return Reject(connection, 400);
  while (received.size() < *bodyLength) {
    if (!receiveMore()) return false;
  }
  received.erase(0, *bodyLength);
  return Respond(connection, *request);
}

// Shutting a socket down does not wake a receive everywhere, so the wait looks up in between.
bool HttpDeviceServer::ReceiveMore(SOCKET socket, std::string& received) {
  for (milliseconds waited{0}; !WaitForBytes(socket, kStopCheck); waited += kStopCheck) {
    if (waited >= kIdleLimit || !Wait(milliseconds(0))) return false;
  }
  std::array<char, 4096> buffer;
  const std::size_t count = Receive(socket, buffer).value_or(0);
  received.append(buffer.data(), count);
  return count > 0;
}

bool HttpDeviceServer::Reject(const Connection& connection, int status) {
  const HttpRequest unreadable{"GET", "", "HTTP/1.0", {}};
  Log(connection, unreadable, status);
  const RenderedAnswer rendered =
      Render({.status = status}, unreadable, "<html><body>Not served</body></html>\r\n");
  if (SendAll(connection.socket.Get(), rendered.bytes)) CloseGracefully(connection.socket.Get());
  return false;
}

bool HttpDeviceServer::Respond(const Connection& connection, const HttpRequest& request) {
  std::string document;
  const Answer answer = TakeAnswer(request, document);
  const RenderedAnswer rendered = Render(answer, request, std::move(document));
  // Logged before the answer goes out: whoever has the answer finds the request in the log.
  Log(connection, request, answer.raw || answer.closeAfter == 0u ? 0 : answer.status);
  const SOCKET socket = connection.socket.Get();
  std::string_view bytes = rendered.bytes;
  const bool cut = answer.closeAfter && *answer.closeAfter < bytes.size();
  if (cut) bytes = bytes.substr(0, *answer.closeAfter);
  if (!Send(socket, answer, bytes)) return false;
  if (rendered.keepsConnection) return true;
  CloseGracefully(socket);
  return false;
}

bool HttpDeviceServer::Send(SOCKET socket, const Answer& answer, std::string_view bytes) {
  if (answer.delay.count() > 0 && !Wait(answer.delay)) return false;
  const std::size_t pieceSize = answer.pieceSize ? answer.pieceSize : bytes.size();
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, pieceSize);
    if (!SendAll(socket, piece)) return false;
    bytes.remove_prefix(piece.size());
    if (!bytes.empty() && answer.pause.count() > 0 && !Wait(answer.pause)) return false;
  }
  return true;
}

// False when the server was stopped meanwhile.
bool HttpDeviceServer::Wait(std::chrono::milliseconds time) {
  std::unique_lock hold(lock_);
  return !stopSignal_.wait_for(hold, time, [this] { return stopping_; });
}

Answer HttpDeviceServer::TakeAnswer(const HttpRequest& request, std::string& document) {
  const std::scoped_lock hold(lock_);
  const std::string path = request.Path();
  const std::optional<std::string> own = Document(path);
  document = own.value_or("<html><body>There is nothing here</body></html>\r\n");
  if (request.method != "GET" && request.method != "HEAD") return {.status = 405, .body = ""};
  if (const auto queue = queued_.find(path); queue != queued_.end() && !queue->second.empty()) {
    Answer answer = std::move(queue->second.front());
    queue->second.pop_front();
    return answer;
  }
  if (const auto scripted = answers_.find(path); scripted != answers_.end()) return scripted->second;
  return {.status = own ? 200 : 404};
}

// What a path has to say by itself; nothing where there is no such path. The lock is held.
std::optional<std::string> HttpDeviceServer::Document(const std::string& path) const {
  if (path == "/") return Index();
  for (const auto& [number, state] : ports_) {
    const std::string digits = std::to_string(number);
    if (path == "/p" + digits) return StatusDocument(state);
    if (path == "/serialport" + digits + ".html") return ConfigurationPage(number, state);
  }
  return std::nullopt;
}

std::string HttpDeviceServer::Index() const {
  std::string page = "<!DOCTYPE html>\r\n<html><head><title>Device server</title></head>\r\n<body><ul>\r\n";
  for (const auto& [number, state] : ports_) {
    const std::string digits = std::to_string(number);
    page += "<li><a href=\"/serialport" + digits + ".html\">Serial port " + digits + "</a></li>\r\n";
  }
  return page + "</ul></body></html>\r\n";
}

void HttpDeviceServer::Log(const Connection& connection, const HttpRequest& request, int status) {
  const std::scoped_lock hold(lock_);
  requests_.push_back({connection.number, request, status});
  if (!verbose_) return;
  std::printf("%u: %s %s -> %d\n", connection.number, request.method.c_str(), request.target.c_str(), status);
  std::fflush(stdout);
}

}  // namespace workbench
