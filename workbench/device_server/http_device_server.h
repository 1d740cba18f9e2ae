// The device server: a small HTTP server on loopback that serves the state of serial ports.
#pragma once

#include "workbench/device_server/socket.h"  // before anything that brings windows.h

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <list>
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
  unsigned connection = 0;  // from 1; requests of one connection share it
  HttpRequest request;
  int status = 0;  // of the answer; 0 for raw bytes and where nothing was answered
};

// Serves, for every port n that it has: "/pn", the status document, and "/serialportn.html", the
// configuration page; "/" is a list of them. GET and HEAD, HTTP/1.0 and 1.1, connections kept as the
// client asks, several at once. What it answers on a path can be scripted.
//
// Every operation may be called on any thread, also while the server runs.
class HttpDeviceServer {
 public:
  HttpDeviceServer();
  ~HttpDeviceServer();  // stops
  HttpDeviceServer(const HttpDeviceServer&) = delete;
  HttpDeviceServer& operator=(const HttpDeviceServer&) = delete;

  // Listens on 127.0.0.1; port 0 takes a free one. Throws std::runtime_error, for example when the port is
  // taken. A stopped server can be started again.
  void Start(std::uint16_t port = 0);
  // Closes every connection, also in the midst of an answer, and waits for its threads.
  void Stop();
  // Where it listens, or has last listened; 0 before the first start.
  [[nodiscard]] std::uint16_t Port() const;

  void SetPort(unsigned portNumber, const PortState& state);
  // Throws std::out_of_range for a port that it does not have.
  [[nodiscard]] PortState PortAt(unsigned portNumber) const;

  // What to answer on a path from now on; on the next request only, before that (a queue); the ordinary
  // thing again.
  void SetAnswer(const std::string& path, const Answer& answer);
  void QueueAnswer(const std::string& path, const Answer& answer);
  void ClearAnswers();

  [[nodiscard]] std::vector<LoggedRequest> Requests() const;
  void ClearRequests();
  // Each answered request is printed to standard output, one line.
  void Verbose(bool verbose);

 private:
  struct Connection {
    unsigned number = 0;
    UniqueSocket socket;
    std::thread thread;
    bool finished = false;
  };
  void AcceptConnections();
  void Serve(Connection& connection);
  [[nodiscard]] bool ServeNext(const Connection& connection, std::string& received);
  [[nodiscard]] bool ReceiveMore(SOCKET socket, std::string& received);
  [[nodiscard]] bool Respond(const Connection& connection, const HttpRequest& request);
  [[nodiscard]] bool Reject(const Connection& connection, int status);
  [[nodiscard]] bool Send(SOCKET socket, const Answer& answer, std::string_view bytes);
  [[nodiscard]] bool Wait(std::chrono::milliseconds time);
  [[nodiscard]] Answer TakeAnswer(const HttpRequest& request, std::string& document);
  [[nodiscard]] std::optional<std::string> Document(const std::string& path) const;
  [[nodiscard]] std::string Index() const;
  void Log(const Connection& connection, const HttpRequest& request, int status);
  void JoinFinished();

  SocketLibrary library_;
  mutable std::mutex lock_;
  std::condition_variable stopSignal_;
  bool stopping_ = false;
  bool verbose_ = false;
  std::uint16_t port_ = 0;
  UniqueSocket listener_;
  std::thread acceptor_;
  std::list<Connection> connections_;
  unsigned lastConnection_ = 0;
  std::map<unsigned, PortState> ports_;
  std::map<std::string, Answer> answers_;
  std::map<std::string, std::deque<Answer>> queued_;
  std::vector<LoggedRequest> requests_;
};

}  // namespace workbench
