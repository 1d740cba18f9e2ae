#include "ui/framework/data_exchange.h"

#include <string_view>

namespace {

// GetDlgItemInt takes the digits at the front of any text; here only digits count.
std::optional<std::uint32_t> ParseUnsigned(std::wstring_view text) noexcept {
  const std::size_t first = text.find_first_not_of(L' ');
  if (first == std::wstring_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(L' ') - first + 1);
  std::uint64_t value = 0;
  for (const wchar_t digit : text) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    value = value * 10 + static_cast<std::uint64_t>(digit - L'0');
    if (value > UINT32_MAX) return std::nullopt;
  }
  return static_cast<std::uint32_t>(value);
}

}  // namespace

std::optional<std::uint32_t> CWinDataExchange::ReadUnsigned(HWND dialog, int control) noexcept {
  wchar_t text[64];
  const UINT length = GetDlgItemTextW(dialog, control, text, ARRAYSIZE(text));
  if (length + 1 >= ARRAYSIZE(text)) return std::nullopt;  // cut off, perhaps
  return ParseUnsigned({text, length});
}

bool CWinDataExchange::WriteUnsigned(HWND dialog, int control, std::uint32_t value) noexcept {
  if (SetDlgItemInt(dialog, control, value, FALSE)) return true;
  RefuseValue(dialog, control);
  return false;
}

void CWinDataExchange::RefuseValue(HWND dialog, int control) noexcept {
  MessageBeep(static_cast<UINT>(-1));
  SetFocus(GetDlgItem(dialog, control));
}
