// What Windows does for CWideString, done by the host's C library: for tests of the portable core only.
#include <cwctype>

#include "base/wide_string.h"

void CWideString::MakeLower() {
  if (IsEmpty()) return;
  for (wchar_t& c : Writable()) c = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
}

void CWideString::MakeUpper() {
  if (IsEmpty()) return;
  for (wchar_t& c : Writable()) c = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c)));
}
