#include "kdport/windows/text.h"

#include <setupapi.h>

#include <cstdio>

namespace KdPort {

std::string Utf8(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
  if (size > 0) WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

std::wstring Wide(std::string_view text) {
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring wide(length > 0 ? static_cast<std::size_t>(length) : 0, L'\0');
  if (length > 0) MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
  return wide;
}

// SetupAPI's own errors are written in hexadecimal everywhere, and Windows has their words under another
// number.
std::string ErrorWords(DWORD error) {
  constexpr DWORD kSetupApi = APPLICATION_ERROR_MASK | ERROR_SEVERITY_ERROR;
  const bool isSetupApi = (error & kSetupApi) == kSetupApi;
  wchar_t buffer[512];
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
      isSetupApi ? static_cast<DWORD>(HRESULT_FROM_SETUPAPI(error)) : error, 0, buffer,
      static_cast<DWORD>(std::size(buffer)), nullptr);
  std::string words = Utf8({buffer, length});
  words.erase(words.find_last_not_of(" .\r\n") + 1);
  char number[16];
  std::snprintf(number, sizeof number, isSetupApi ? "0x%08lX" : "%lu", error);
  return words.empty() ? "error " + std::string(number) : words + " (error " + number + ")";
}

}  // namespace KdPort
