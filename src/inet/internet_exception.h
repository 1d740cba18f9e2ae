// The one exception type of the HTTP client. Windows only.
//
// It leaves src/inet only through DownloadStatusDocument (status/status_download.h) and is caught in the same
// room: pages see a document or none.
#pragma once

#include <windows.h>

#include <wininet.h>

#include <cstdint>
#include <type_traits>

#include "base/wide_string.h"

namespace KdINet {

// A WinINet call that failed. The texts are for diagnosis; users are shown none of them. Thrown by value and
// caught by reference; copies share their texts.
class CInternetException {
 public:
  // To be made in the statement after the failing call: the thread's last error and WinINet's last response
  // are read here. `failed` is what the step worked on, or null, and is only kept for comparison: it may be
  // closed by the time the exception is caught. The format is that of CWideString::Format.
  template <class... Args>
  CInternetException(HINTERNET failed, CFormatText<std::type_identity_t<Args>...> format, const Args&... args)
      : CInternetException(failed) {
    message = CWideString::Format(format, args...);
  }
  CInternetException(const CInternetException&) = default;
  CInternetException& operator=(const CInternetException&) = default;
  virtual ~CInternetException() = default;

  HINTERNET handle;
  std::uint32_t lastError;          // Windows error code
  std::uint32_t responseError = 0;  // what InternetGetLastResponseInfoW reports
  CWideString message;              // which step failed, and on what
  CWideString responseText;         // the server's last response, or "Unknown error"

 private:
  explicit CInternetException(HINTERNET failed);
  void ReadResponse();
};

}  // namespace KdINet
