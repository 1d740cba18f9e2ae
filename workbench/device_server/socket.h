// Windows sockets that close themselves. Windows only.
#pragma once

#include <winsock2.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/unique_handle.h"

namespace workbench {

struct SocketTraits {
  using Handle = SOCKET;
  static Handle Invalid() noexcept { return INVALID_SOCKET; }
  static void Close(Handle handle) noexcept { closesocket(handle); }
};
using UniqueSocket = CUniqueHandle<SocketTraits>;

// Keeps Windows sockets started as long as one object lives. Throws std::runtime_error.
class SocketLibrary {
 public:
  SocketLibrary();
  ~SocketLibrary();
  SocketLibrary(const SocketLibrary&) = delete;
  SocketLibrary& operator=(const SocketLibrary&) = delete;
};

// Listens on a free port of 127.0.0.1. Throws std::runtime_error.
[[nodiscard]] UniqueSocket ListenOnLoopback();
// Connects to 127.0.0.1; an invalid socket when nobody answers.
[[nodiscard]] UniqueSocket ConnectToLoopback(std::uint16_t port);
[[nodiscard]] std::uint16_t LocalPort(SOCKET socket);

// Sends everything; false when the peer is gone.
[[nodiscard]] bool SendAll(SOCKET socket, std::string_view bytes);
// Waits until Receive has something to return at once; false when the time is over.
[[nodiscard]] bool WaitForBytes(SOCKET socket, std::chrono::milliseconds limit);
// Receives at least one byte and returns how many; 0 when the peer has closed or is gone.
[[nodiscard]] std::size_t Receive(SOCKET socket, std::span<char> buffer);

}  // namespace workbench
