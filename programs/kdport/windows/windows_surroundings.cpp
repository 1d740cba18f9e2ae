#include "kdport/windows/windows_surroundings.h"

#include <windows.h>
#include <array>

#include <newdev.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <optional>

#include "config/driver_channel.h"
#include "install/devices/class_installer.h"
#include "install/management.h"
#include "kdport/windows/live.h"
#include "kdport/windows/text.h"
#include "status/port_status.h"

namespace KdPort {

namespace {

std::atomic<bool> interrupted{false};

// Ends what runs between two steps; the second time at once, as without this.
BOOL WINAPI NoteInterruption(DWORD) {
  return interrupted.exchange(true) ? FALSE : TRUE;
}

// A console gets characters, whatever its code page; a file or a pipe gets UTF-8.
void Write(DWORD stream, std::string_view text) {
  const HANDLE handle = GetStdHandle(stream);
  DWORD mode = 0, written = 0;
  if (GetConsoleMode(handle, &mode)) {
    constexpr std::size_t kPiece = 8192;  // older consoles take no more than 64 KB at once
    const std::wstring wide = Wide(text);
    for (std::size_t at = 0; at < wide.size(); at += kPiece) {
      const auto count = static_cast<DWORD>(std::min(kPiece, wide.size() - at));
      if (!WriteConsoleW(handle, wide.data() + at, count, &written, nullptr)) return;
    }
    return;
  }
  while (!text.empty()) {
    const auto count = static_cast<DWORD>(std::min<std::size_t>(text.size(), 1 << 16));
    if (!::WriteFile(handle, text.data(), count, &written, nullptr) || written == 0) return;
    text.remove_prefix(written);
  }
}

// What the page shows of one port.
struct LivePort {
  CKdUVcpUserModeInterface port;
  CKdNBusUserModeInterface bus;
  bool known = false;
};

LiveStatus StatusOf(LivePort& port, const std::optional<CWideString>& document) {
  if (!port.known) return {false, "-", "-", "-", "-", "-", "-", "-"};
  const PortStatus status = ApplyStatusDocument(document.value_or(CWideString()), port.port, port.bus);
  return {document.has_value(),  Utf8(status.baudRate),    Utf8(status.dataBits), Utf8(status.parity),
          Utf8(status.stopBits), Utf8(status.flowControl), Utf8(status.state),    Utf8(status.mode)};
}

CFileHandle Open(const std::string& path, DWORD access, DWORD creation) {
  return CFileHandle(CreateFileW(Wide(path).c_str(), access, FILE_SHARE_READ, nullptr, creation,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace

bool CWindowsSurroundings::IsAdministrator() {
  std::array<BYTE, SECURITY_MAX_SID_SIZE> administrators{};
  auto size = static_cast<DWORD>(administrators.size());
  BOOL isMember = FALSE;
  return CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators.data(), &size) &&
         CheckTokenMembership(nullptr, administrators.data(), &isMember) && isMember;
}

std::vector<LiveStatus> CWindowsSurroundings::AskServers(const Host& host, std::span<const std::size_t> ports,
                                                         std::chrono::milliseconds timeout) {
  std::vector<std::unique_ptr<LivePort>> sets;
  std::vector<PortWebAddress> asked;
  for (const std::size_t i : ports) {
    LivePort& one = *sets.emplace_back(std::make_unique<LivePort>());
    const CWideString path = host.ports[i].present ? host_.InterfaceOf(host.ports[i]) : CWideString();
    one.known = ReadCurrentSet(path, one.port, one.port.kSelector) &&
                ReadCurrentSet(path, one.bus, one.bus.kSelector);
    if (one.known) asked.push_back(WebAddressOf(one.bus));
  }
  const Documents documents = FetchDocuments(asked, timeout);
  std::vector<LiveStatus> live;
  live.reserve(sets.size());
  auto document = documents.begin();
  for (const auto& one : sets) live.push_back(StatusOf(*one, one->known ? *document++ : std::nullopt));
  return live;
}

Outcome CWindowsSurroundings::UpdateDriver(const std::string& hardwareId, const std::string& inf,
                                           bool& restartNeeded) {
  std::wstring path(32767, L'\0');
  const auto room = static_cast<DWORD>(path.size());
  const DWORD length = GetFullPathNameW(Wide(inf).c_str(), room, path.data(), nullptr);
  if (length == 0 || length >= room) return {Outcome::Failed, ErrorWords(GetLastError())};
  BOOL restart = FALSE;
  if (!::UpdateDriver(Wide(hardwareId).c_str(), path.c_str(), INSTALLFLAG_NONINTERACTIVE, restart)) {
    return {Outcome::Failed, ErrorWords(GetLastError())};
  }
  restartNeeded = restart != FALSE;
  return {};
}

void CWindowsSurroundings::EndChanges() {
  ReenumerateDevNode(CWideString());
}

bool CWindowsSurroundings::ReadFile(const std::string& path, std::string& content) {
  const CFileHandle file = Open(path, GENERIC_READ, OPEN_EXISTING);
  if (!file) return false;
  char buffer[1 << 14];
  for (DWORD read = 0; ::ReadFile(file.Get(), buffer, sizeof buffer, &read, nullptr);) {
    if (read == 0) return true;
    content.append(buffer, read);
  }
  return false;
}

FileResult CWindowsSurroundings::WriteFile(const std::string& path, std::string_view content, bool replace) {
  const CFileHandle file = Open(path, GENERIC_WRITE, replace ? CREATE_ALWAYS : CREATE_NEW);
  if (!file) return GetLastError() == ERROR_FILE_EXISTS ? FileResult::Exists : FileResult::Failed;
  DWORD written = 0;
  const bool whole =
      ::WriteFile(file.Get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr) &&
      written == content.size() && FlushFileBuffers(file.Get());
  return whole ? FileResult::Done : FileResult::Failed;
}

void CWindowsSurroundings::Print(std::string_view text) {
  Write(STD_OUTPUT_HANDLE, text);
}

void CWindowsSurroundings::PrintError(std::string_view text) {
  Write(STD_ERROR_HANDLE, text);
}

void CWindowsSurroundings::ShowProgress(std::size_t over, std::size_t all) {
  DWORD mode = 0;
  if (!GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode)) return;
  PrintError("\r" + std::to_string(over + 1) + " of " + std::to_string(all) + (over + 1 == all ? "\n" : ""));
}

// Catches Ctrl+C from the first question on: before the first step it ends the program as usual.
bool CWindowsSurroundings::IsInterrupted() {
  static const bool kCaught = SetConsoleCtrlHandler(NoteInterruption, TRUE) != FALSE;
  return kCaught && interrupted;
}

}  // namespace KdPort
