// What an exception of the HTTP client tells. No user sees it, so nothing else in the system would notice.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

#include "inet/internet_exception.h"
#include "inet/internet_handles.h"
#include "workbench/machine/gate/redirection.h"

namespace {

using KdINet::CHttpConnection;
using KdINet::CHttpFile;
using KdINet::CInternetException;
using KdINet::CInternetSession;

constexpr std::uint16_t kNobody = 1;  // a TCP port of loopback that nothing listens on

// `handle` is null where the step was to make one.
template <class Failing>
void ExpectThrown(const wchar_t* message, const testing::Matcher<DWORD>& lastError, HINTERNET handle,
                  Failing&& failing, const wchar_t* responseText = L"Unknown error") {
  SCOPED_TRACE(testing::PrintToString(message));
  try {
    failing();
    ADD_FAILURE() << "nothing thrown";
  } catch (const CInternetException& error) {
    EXPECT_EQ(error.message, message);
    EXPECT_THAT(error.lastError, lastError);
    EXPECT_EQ(error.handle, handle);
    EXPECT_EQ(error.responseText, responseText);
  }
}

// WinINet as it cannot be brought to be: without a session to be had, and with an answer that it keeps.
HINTERNET WINAPI OpenNoSession(const wchar_t*, DWORD, const wchar_t*, const wchar_t*, DWORD) {
  SetLastError(ERROR_INTERNET_OUT_OF_HANDLES);
  return nullptr;
}
BOOL WINAPI TellResponse(DWORD* error, wchar_t* text, DWORD* length) {
  constexpr std::wstring_view kText(L"550 No such port\0", 17);
  *error = 550;
  const bool fits = *length >= kText.size();
  if (fits) kText.copy(text, kText.size());
  *length = static_cast<DWORD>(kText.size());
  SetLastError(fits ? ERROR_SUCCESS : ERROR_INSUFFICIENT_BUFFER);
  return fits ? TRUE : FALSE;
}
workbench::AnyFunction Replacement(const char*, const char* name) {
  const std::string_view function = name;
  if (function == "InternetOpenW") return reinterpret_cast<workbench::AnyFunction>(&OpenNoSession);
  if (function == "InternetGetLastResponseInfoW")
    return reinterpret_cast<workbench::AnyFunction>(&TellResponse);
  return nullptr;
}

TEST(InetErrors, EachStepTellsWhatItWasAbout) {
  const CInternetSession session(L"test");
  ExpectThrown(L"Failed to connect to server (:8080)", ERROR_INVALID_PARAMETER, nullptr,
               [&] { const CHttpConnection connection(session, L"", 8080); });

  const CHttpConnection connection(session, L"127.0.0.1", kNobody);
  const CHttpFile file(connection, L"/p3");
  const HINTERNET request = file;
  ExpectThrown(L"Failed to send http request", ERROR_INTERNET_CANNOT_CONNECT, request, [&] { file.Send(); });

  // Closed under the objects' feet; Windows and Wine do not agree on what that is called.
  const auto closed = testing::AnyOf(ERROR_INVALID_HANDLE, ERROR_INTERNET_INCORRECT_HANDLE_TYPE);
  InternetCloseHandle(request);
  InternetCloseHandle(connection);
  ExpectThrown(L"Failed to read from network (4096 bytes)", closed, request, [&] {
    char buffer[CHttpFile::kReadBytes];
    static_cast<void>(file.Read(buffer));
  });
  ExpectThrown(L"Failed to open http request (GET /p3)", closed, nullptr,
               [&] { const CHttpFile other(connection, L"/p3"); });

  const workbench::Redirection redirection(GetModuleHandleW(nullptr), &Replacement);
  ExpectThrown(
      L"Failed to open an internet session", ERROR_INTERNET_OUT_OF_HANDLES, nullptr,
      [] { const CInternetSession none(L"test"); }, L"550 No such port");
}

}  // namespace
