#include "workbench/device_server/socket.h"

#include <algorithm>
#include <climits>
#include <stdexcept>
#include <string>

namespace workbench {
namespace {

[[noreturn]] void Throw(const char* what) {
  throw std::runtime_error(std::string(what) + ": error " + std::to_string(WSAGetLastError()));
}

sockaddr_in Loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  return address;
}

}  // namespace

SocketLibrary::SocketLibrary() {
  WSADATA data{};
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) throw std::runtime_error("Windows sockets do not start");
}

SocketLibrary::~SocketLibrary() {
  WSACleanup();
}

UniqueSocket ListenOnLoopback() {
  UniqueSocket listener(socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
  const sockaddr_in address = Loopback(0);
  if (!listener || bind(listener.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener.Get(), SOMAXCONN) != 0) {
    Throw("no socket listens on loopback");
  }
  return listener;
}

UniqueSocket ConnectToLoopback(std::uint16_t port) {
  UniqueSocket client(socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
  if (!client) Throw("No socket");
  const sockaddr_in address = Loopback(port);
  if (connect(client.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) client.Reset();
  return client;
}

std::uint16_t LocalPort(SOCKET socket) {
  sockaddr_in address{};
  int length = sizeof address;
  if (getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0)
    Throw("The socket has no name");
  return ntohs(address.sin_port);
}

bool SendAll(SOCKET socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const int length = static_cast<int>(std::min<std::size_t>(bytes.size(), INT_MAX));
    const int sent = send(socket, bytes.data(), length, 0);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

std::size_t Receive(SOCKET socket, std::span<char> buffer) {
  const int length = static_cast<int>(std::min<std::size_t>(buffer.size(), INT_MAX));
  const int received = recv(socket, buffer.data(), length, 0);
  return received < 0 ? 0 : static_cast<std::size_t>(received);
}

bool WaitForBytes(SOCKET socket, std::chrono::milliseconds limit) {
  fd_set readable{};
  readable.fd_count = 1;
  readable.fd_array[0] = socket;
  const auto milliseconds = static_cast<long>(limit.count());
  timeval time{milliseconds / 1000, milliseconds % 1000 * 1000};
  return select(0, &readable, nullptr, nullptr, &time) != 0;
}

}  // namespace workbench
