// The WinINet handles of one HTTP GET. Windows only.
//
// Making an object makes the call, and throws CInternetException when it fails. To be made and destroyed in
// the order session, connection, file, and back. Everything is synchronous and blocks the calling thread with
// WinINet's own time-outs; the HTTP status of an answer is not looked at.
#pragma once

#include <windows.h>

#include <wininet.h>

#include <cstdint>
#include <span>

#include "base/wide_string.h"

namespace KdINet {

// Owns one WinINet handle, null when closed.
class CInternetHandle {
 public:
  CInternetHandle(const CInternetHandle&) = delete;
  CInternetHandle& operator=(const CInternetHandle&) = delete;
  virtual ~CInternetHandle();
  // The held handle, borrowed.
  virtual operator HINTERNET() const noexcept { return handle_; }  // NOLINT: goes where a handle goes

 protected:
  CInternetHandle() noexcept = default;
  void Hold(HINTERNET handle) noexcept { handle_ = handle; }
  // What identifies this object to WinINet; no callback is installed, so it is never handed back.
  [[nodiscard]] DWORD_PTR Context() const noexcept { return reinterpret_cast<DWORD_PTR>(this); }

 private:
  HINTERNET handle_ = nullptr;
};

// A session without proxy whose answers are not cached, under the name of the host process.
class CInternetSession : public CInternetHandle {
 public:
  explicit CInternetSession(const CWideString& agent);
};

class CInternetConnection : public CInternetHandle {
 protected:
  CInternetConnection(const CInternetSession& session, const CWideString& host, std::uint16_t port,
                      DWORD service);
};

// A connection to an HTTP server. WinINet connects when the first request is sent.
class CHttpConnection : public CInternetConnection {
 public:
  CHttpConnection(const CInternetSession& session, const CWideString& host, std::uint16_t port)
      : CInternetConnection(session, host, port, INTERNET_SERVICE_HTTP) {}
};

class CInternetFile : public CInternetHandle {
 public:
  static constexpr std::uint32_t kReadBytes = 4096;

  // Reads the next bytes of the answer into the buffer; returns how many, 0 at the end.
  [[nodiscard]] std::uint32_t Read(std::span<char, kReadBytes> buffer) const;

 protected:
  CInternetFile() noexcept = default;
};

// A GET of one object, any type accepted.
class CHttpFile : public CInternetFile {
 public:
  CHttpFile(const CHttpConnection& connection, const CWideString& object);
  // Sends the request; the answer is there to be read afterwards.
  void Send() const;
};

// The name that the session goes by: the host process's file name without directory and extension.
[[nodiscard]] CWideString AgentName();

}  // namespace KdINet
