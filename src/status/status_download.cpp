#include "status/status_download.h"

#include <windows.h>

#include <string>
#include <string_view>

#include "inet/internet_exception.h"
#include "inet/internet_handles.h"
#include "status/document_buffer.h"

namespace {

static_assert(CDocumentBuffer::kPieceBytes == KdINet::CInternetFile::kReadBytes);

// The document does not say how it is encoded; the host's ANSI code page is assumed.
CWideString FromAnsi(std::string_view text) {
  if (text.empty()) return {};
  const int length = static_cast<int>(text.size());  // one piece at most
  const int needed = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
  if (needed <= 0) return {};
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  const int written = MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), needed);
  return CWideString(std::wstring_view(wide.data(), written > 0 ? static_cast<std::size_t>(written) : 0));
}

}  // namespace

CWideString DownloadStatusDocument(const CWideString& host, std::uint16_t webPort, const CWideString& path) {
  // Closed in the reverse order, also when a step throws.
  const KdINet::CInternetSession session(KdINet::AgentName());
  const KdINet::CHttpConnection connection(session, host, webPort);
  const KdINet::CHttpFile file(connection, path);
  file.Send();
  CDocumentBuffer buffer;
  while (const std::uint32_t count = file.Read(buffer.Room())) buffer.Accept(count);
  CWideString document = FromAnsi(buffer.Document());
  document.MakeLower();
  return document;
}

std::optional<CWideString> FetchStatusDocument(const PortWebAddress& web) {
  try {
    return DownloadStatusDocument(web.host, web.webPort, StatusDocumentPath(web));
  } catch (const KdINet::CInternetException&) {
    return std::nullopt;
  }
}
