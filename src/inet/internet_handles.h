// The WinINet handles of one HTTP GET. Windows only.
//
// Making an object makes the call, and throws CInternetException when it fails. Objects are made in the order
// session, connection, file and destroyed in the reverse order: WinINet's handles are a tree, and closing a
// parent would close its children under their owners.
//
// Everything is synchronous and blocks the calling thread with WinINet's own time-outs. All objects of one
// GET belong to one thread. The HTTP status of an answer is not looked at: its body is read whatever it says.
#pragma once

#include <windows.h>

#include <wininet.h>

#include <cstdint>
#include <span>

#include "base/wide_string.h"

namespace KdINet {

// Owns one WinINet handle and closes it at destruction; null when none is held.
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

// A connection to one port of a host, for a service that the derived class names (INTERNET_SERVICE_*).
class CInternetConnection : public CInternetHandle {
 protected:
  CInternetConnection(const CInternetSession& session, const CWideString& host, std::uint16_t port,
                      DWORD service);
};

// A connection to an HTTP server. `host` is a name or an address as text. WinINet connects when the first
// request is sent, so a server that is out of reach shows only then.
class CHttpConnection : public CInternetConnection {
 public:
  CHttpConnection(const CInternetSession& session, const CWideString& host, std::uint16_t port)
      : CInternetConnection(session, host, port, INTERNET_SERVICE_HTTP) {}
};

// An answer that can be read.
class CInternetFile : public CInternetHandle {
 public:
  static constexpr std::uint32_t kReadBytes = 4096;

  // Reads the next bytes of the answer into the buffer and returns how many were read; 0 at the end. The
  // buffer is not terminated.
  [[nodiscard]] std::uint32_t Read(std::span<char, kReadBytes> buffer) const;

 protected:
  CInternetFile() noexcept = default;
};

// A GET of one object, any type accepted. `object` is the path on the server, from its first slash.
class CHttpFile : public CInternetFile {
 public:
  CHttpFile(const CHttpConnection& connection, const CWideString& object);
  // Sends the request, once; the answer can be read afterwards.
  void Send() const;
};

// The name of the session's user agent: the host process's file name without directory and extension.
[[nodiscard]] CWideString AgentName();

}  // namespace KdINet
