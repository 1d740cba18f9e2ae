// The keys of a control that is a link, for its window procedure. Windows only.
#pragma once

#include <windows.h>

// The answer to WM_GETDLGCODE, whose lParam is a pointer to the message that is about to be handled, or null.
// Enter would press the sheet's OK button if the link did not ask for it.
[[nodiscard]] inline LRESULT LinkDialogCode(LPARAM lParam) noexcept {
  const auto* const message = reinterpret_cast<const MSG*>(lParam);
  const bool enter = message != nullptr && message->message == WM_KEYDOWN && message->wParam == VK_RETURN;
  return DLGC_WANTCHARS | (enter ? DLGC_WANTMESSAGE : 0);
}

// Whether the character of a WM_CHAR follows the link.
[[nodiscard]] constexpr bool IsLinkKey(WPARAM character) noexcept {
  return character == VK_RETURN || character == VK_SPACE;
}
