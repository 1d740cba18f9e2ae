// Unsigned numbers in edit controls. Windows only.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

// Mixed into pages with number fields. `dialog` is the page's window and `control` an id of its template; all
// calls are made on the dialog's thread.
class CWinDataExchange {
 protected:
  // The decimal number in an edit control; nothing when the text is empty, holds something else (pasted
  // letters), or does not fit 32 bits.
  [[nodiscard]] static std::optional<std::uint32_t> ReadUnsigned(HWND dialog, int control) noexcept;
  // Shows a number. When the control does not take it, the user is pointed at it (RefuseValue) and false
  // returned.
  static bool WriteUnsigned(HWND dialog, int control, std::uint32_t value) noexcept;
  // Points the user at a field whose value was not accepted: a beep, and the focus.
  static void RefuseValue(HWND dialog, int control) noexcept;
};
