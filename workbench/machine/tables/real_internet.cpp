// Real functions of WinINet, against a real device server on loopback.
#include <windows.h>

#include <wininet.h>

#include "workbench/machine/tables/tables.h"

namespace workbench {
namespace {

const FunctionRow kRows[] = {
    {"wininet.dll", KD_REAL(InternetOpenW), FailsWithZero(ERROR_INTERNET_OUT_OF_HANDLES),
     Returns(HandleKind::Internet)},
    {"wininet.dll", KD_REAL(InternetConnectW), FailsWithZero(ERROR_INTERNET_INVALID_URL),
     Returns(HandleKind::Internet)},
    {"wininet.dll", KD_REAL(HttpOpenRequestW), FailsWithZero(ERROR_INTERNET_OUT_OF_HANDLES),
     Returns(HandleKind::Internet)},
    {"wininet.dll", KD_REAL(HttpSendRequestW), FailsWithZero(ERROR_INTERNET_CANNOT_CONNECT)},
    {"wininet.dll", KD_REAL(InternetReadFile), FailsWithZero(ERROR_INTERNET_CONNECTION_RESET)},
    {"wininet.dll", KD_REAL(InternetGetLastResponseInfoW), FailsWithZero(ERROR_INSUFFICIENT_BUFFER)},
    {"wininet.dll", KD_REAL(InternetCloseHandle), FailsWithZero(ERROR_INVALID_HANDLE),
     Closes(HandleKind::Internet)},
};

}  // namespace

const std::span<const FunctionRow> kInternetRows = kRows;

}  // namespace workbench
