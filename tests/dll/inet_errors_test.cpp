// What an exception of the HTTP client tells. No user sees it, so nothing else in the system would notice.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inet/internet_exception.h"
#include "inet/internet_handles.h"

namespace {

using KdINet::CHttpConnection;
using KdINet::CHttpFile;
using KdINet::CInternetException;
using KdINet::CInternetSession;

constexpr std::uint16_t kNobody = 1;  // a TCP port of loopback that nothing listens on

// `handle` is null where the step was to make one.
template <class Failing>
void ExpectThrown(const wchar_t* message, const testing::Matcher<DWORD>& lastError, HINTERNET handle,
                  Failing&& failing) {
  SCOPED_TRACE(testing::PrintToString(message));
  try {
    failing();
    ADD_FAILURE() << "nothing thrown";
  } catch (const CInternetException& error) {
    EXPECT_EQ(error.message, message);
    EXPECT_THAT(error.lastError, lastError);
    EXPECT_EQ(error.handle, handle);
    EXPECT_EQ(error.responseText, L"Unknown error");
  }
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
}

}  // namespace
