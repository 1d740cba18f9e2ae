// The device server: a small HTTP server on loopback that serves the state of serial ports.
#pragma once

#include "workbench/device_server/socket.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "workbench/device_server/http_message.h"
#include "workbench/device_server/port_state.h"

namespace workbench {

// One request that was answered, for tests and people.
struct LoggedRequest {
  HttpRequest request;
  int status = 0;  // of the answer; 0 for raw bytes
};

// Serves "/pn", the status document of port n, to one client after the other, and closes the connection
// behind each answer. What it answers on a path can be scripted.
//
// Every operation may be called on any thread, also while the server runs.
class HttpDeviceServer {
 public:
  HttpDeviceServer() = default;
  ~HttpDeviceServer() { Stop(); }
  HttpDeviceServer(const HttpDeviceServer&) = delete;
  HttpDeviceServer& operator=(const HttpDeviceServer&) = delete;

  // Listens on a free port of 127.0.0.1. Throws std::runtime_error. A stopped server can be started again.
  void Start();
  // Ends an answer that is under way, and refuses connections from now on.
  void Stop();
  // Where it listens, or has last listened; 0 before the first start.
  [[nodiscard]] std::uint16_t Port() const { return port_; }

  void SetPort(unsigned portNumber, const PortState& state);

  // What to answer on a path from now on; the ordinary thing again.
  void SetAnswer(const std::string& path, const Answer& answer);
  void ClearAnswers();

  [[nodiscard]] std::vector<LoggedRequest> Requests() const;
  void ClearRequests();

 private:
  void ServeClients();
  void Serve(SOCKET client);
  [[nodiscard]] Answer AnswerOn(const std::string& path, std::string& document);
  [[nodiscard]] bool Send(SOCKET client, const Answer& answer, std::string_view bytes) const;
  [[nodiscard]] bool Wait(std::chrono::milliseconds time) const;

  SocketLibrary library_;
  mutable std::mutex lock_;
  std::uint16_t port_ = 0;
  std::atomic<bool> stopping_ = false;
  UniqueSocket listener_;
  std::thread thread_;
  std::map<unsigned, PortState> ports_;
  std::map<std::string, Answer> answers_;
  std::vector<LoggedRequest> requests_;
};

}  // namespace workbench
