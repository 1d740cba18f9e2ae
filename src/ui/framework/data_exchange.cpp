#include "ui/framework/data_exchange.h"

std::optional<std::uint32_t> CWinDataExchange::ReadUnsigned(HWND dialog, int control) noexcept {
  BOOL translated = FALSE;
  const UINT value = GetDlgItemInt(dialog, control, &translated, FALSE);
  if (!translated) return std::nullopt;
  return value;
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
