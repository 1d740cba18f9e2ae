#include "inet/internet_exception.h"

#include <cwchar>
#include <string>

namespace KdINet {

CInternetException::CInternetException(HINTERNET failed) : handle(failed), lastError(GetLastError()) {
  ReadResponse();
}

void CInternetException::ReadResponse() {
  DWORD error = 0;
  DWORD length = 0;
  static_cast<void>(InternetGetLastResponseInfoW(&error, nullptr, &length));
  responseError = error;
  std::wstring text;
  if (length != 0) {
    // One element more than asked for, so that the text ends inside the buffer whatever is written.
    text.resize(static_cast<std::size_t>(length) + 1);
    if (InternetGetLastResponseInfoW(&error, text.data(), &length)) {
      responseError = error;
      text.resize(std::wcslen(text.c_str()));
    } else {
      text.clear();
    }
  }
  responseText = text.empty() ? CWideString(L"Unknown error") : CWideString(text);
}

}  // namespace KdINet
