#include "inet/internet_handles.h"

#include <shlwapi.h>

#include <algorithm>
#include <array>
#include <utility>

#include "base/last_error.h"
#include "inet/internet_exception.h"

namespace KdINet {

namespace {

constexpr DWORD kSessionFlags = INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_KEEP_CONNECTION;
constexpr wchar_t kVerb[] = L"GET";

}  // namespace

CInternetHandle::~CInternetHandle() {
  if (handle_ == nullptr) return;
  const CLastErrorKeeper keeper;
  InternetCloseHandle(std::exchange(handle_, nullptr));
}

CInternetSession::CInternetSession(const CWideString& agent) {
  const HINTERNET handle =
      InternetOpenW(agent.Text(), INTERNET_OPEN_TYPE_DIRECT, nullptr, nullptr, kSessionFlags);
  if (handle == nullptr) throw CInternetException(handle, L"Failed to open an internet session");
  Hold(handle);
}

CInternetConnection::CInternetConnection(const CInternetSession& session, const CWideString& host,
                                         std::uint16_t port, DWORD service) {
  const HINTERNET handle =
      InternetConnectW(session, host.Text(), port, nullptr, nullptr, service, 0, Context());
  if (handle == nullptr) throw CInternetException(handle, L"Failed to connect to server (%s:%u)", host, port);
  Hold(handle);
}

CHttpFile::CHttpFile(const CHttpConnection& connection, const CWideString& object) {
  const wchar_t* acceptTypes[] = {L"*/*", nullptr};
  const HINTERNET handle = HttpOpenRequestW(connection, kVerb, object.Text(), nullptr, nullptr, acceptTypes,
                                            INTERNET_FLAG_KEEP_CONNECTION, Context());
  if (handle == nullptr) {
    throw CInternetException(handle, L"Failed to open http request (%s %s)", kVerb, object);
  }
  Hold(handle);
}

void CHttpFile::Send() const {
  if (!HttpSendRequestW(*this, nullptr, static_cast<DWORD>(-1), nullptr, 0)) {
    throw CInternetException(*this, L"Failed to send http request");
  }
}

std::uint32_t CInternetFile::Read(std::span<char, kReadBytes> buffer) const {
  DWORD read = 0;
  if (!InternetReadFile(*this, buffer.data(), kReadBytes, &read)) {
    throw CInternetException(*this, L"Failed to read from network (%u bytes)", kReadBytes);
  }
  return std::min<std::uint32_t>(read, kReadBytes);
}

CWideString AgentName() {
  std::array<wchar_t, MAX_PATH> path{};
  // The call cuts a longer path off; the agent's name is then a part of a directory's, which does no harm.
  GetModuleFileNameW(nullptr, path.data(), MAX_PATH);
  path.back() = L'\0';
  PathRemoveExtensionW(path.data());
  return CWideString(PathFindFileNameW(path.data()));
}

}  // namespace KdINet
