#include "workbench/device_server/http_device_server.h"

#include <algorithm>
#include <array>
#include <utility>

namespace workbench {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kLargestHead = 16 * 1024;
constexpr milliseconds kStopCheck{20};

// Ends the sending side and takes what still comes in. Closing a socket with unread bytes would reset the
// connection, and the reset may overtake the end of the answer.
void CloseGracefully(SOCKET socket) {
  shutdown(socket, SD_SEND);
  std::array<char, 1024> rest{};
  while (WaitForBytes(socket, milliseconds(2000)) && Receive(socket, rest) > 0) {
  }
}

}  // namespace

void HttpDeviceServer::Start() {
  Stop();
  listener_ = ListenOnLoopback();
  port_ = LocalPort(listener_.Get());
  stopping_ = false;
  thread_ = std::thread([this] { ServeClients(); });
}

void HttpDeviceServer::Stop() {
  if (!thread_.joinable()) return;
  stopping_ = true;
  // Closing a listener does not wake who waits for a client everywhere; a client does.
  static_cast<void>(ConnectToLoopback(port_));
  thread_.join();
  listener_.Reset();
}

void HttpDeviceServer::SetPort(unsigned portNumber, const PortState& state) {
  const std::scoped_lock hold(lock_);
  ports_[portNumber] = state;
}

void HttpDeviceServer::SetAnswer(const std::string& path, const Answer& answer) {
  const std::scoped_lock hold(lock_);
  answers_[path] = answer;
}

void HttpDeviceServer::ClearAnswers() {
  const std::scoped_lock hold(lock_);
  answers_.clear();
}

std::vector<LoggedRequest> HttpDeviceServer::Requests() const {
  const std::scoped_lock hold(lock_);
  return requests_;
}

void HttpDeviceServer::ClearRequests() {
  const std::scoped_lock hold(lock_);
  requests_.clear();
}

void HttpDeviceServer::ServeClients() {
  for (;;) {
    const UniqueSocket client(accept(listener_.Get(), nullptr, nullptr));
    if (stopping_ || !client) return;
    Serve(client.Get());
  }
}

// Reads the head of one request and answers it. A client that goes on sending, or sends nothing, is left.
void HttpDeviceServer::Serve(SOCKET client) {
  std::string received;
  std::size_t end = std::string::npos;
  while ((end = received.find("\r\n\r\n")) == std::string::npos) {
    if (received.size() > kLargestHead) return;
    while (!WaitForBytes(client, kStopCheck)) {
      if (stopping_) return;
    }
    std::array<char, 4096> buffer;
    const std::size_t count = Receive(client, buffer);
    if (count == 0) return;
    received.append(buffer.data(), count);
  }
  const auto request = ParseRequestHead(std::string_view(received).substr(0, end));
  if (!request) return;
  std::string document;
  const Answer answer = AnswerOn(request->target, document);
  const std::string bytes = Render(answer, std::move(document));
  {
    // Logged before the answer goes out: a client that has its answer finds its request in the log.
    const std::scoped_lock hold(lock_);
    requests_.push_back({*request, answer.raw ? 0 : answer.status});
  }
  if (Send(client, answer, bytes)) CloseGracefully(client);
}

Answer HttpDeviceServer::AnswerOn(const std::string& path, std::string& document) {
  const std::scoped_lock hold(lock_);
  const auto port =
      std::ranges::find_if(ports_, [&](const auto& one) { return path == "/p" + std::to_string(one.first); });
  document = port == ports_.end() ? "<html><body>There is nothing here</body></html>\r\n"
                                  : StatusDocument(port->second);
  if (const auto scripted = answers_.find(path); scripted != answers_.end()) return scripted->second;
  return {.status = port == ports_.end() ? 404 : 200};
}

bool HttpDeviceServer::Send(SOCKET client, const Answer& answer, std::string_view bytes) const {
  if (!Wait(answer.delay)) return false;
  const std::size_t pieceSize = answer.pieceSize ? answer.pieceSize : bytes.size();
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, pieceSize);
    if (!SendAll(client, piece)) return false;
    bytes.remove_prefix(piece.size());
    if (!bytes.empty() && !Wait(answer.pause)) return false;
  }
  return true;
}

// False when the server is stopped meanwhile.
bool HttpDeviceServer::Wait(milliseconds time) const {
  for (; time.count() > 0 && !stopping_; time -= kStopCheck)
    std::this_thread::sleep_for(std::min(time, kStopCheck));
  return !stopping_;
}

}  // namespace workbench
