#include "ui/framework/picture_link.h"

#include "ui/framework/link_keys.h"

namespace {

// The control's own window procedure. A static control makes no use of its user data.
WNDPROC OwnProcedure(HWND picture) noexcept {
  return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(picture, GWLP_USERDATA));
}

void Follow(HWND picture) noexcept {
  SendMessageW(GetParent(picture), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(picture), STN_CLICKED),
               reinterpret_cast<LPARAM>(picture));
}

void DrawFocus(HWND picture) noexcept {
  const HDC context = GetDC(picture);
  if (context == nullptr) return;
  RECT area;
  GetClientRect(picture, &area);
  DrawFocusRect(context, &area);
  ReleaseDC(picture, context);
}

LRESULT CALLBACK LinkProcedure(HWND picture, UINT message, WPARAM wParam, LPARAM lParam) {
  const WNDPROC own = OwnProcedure(picture);
  switch (message) {
    case WM_GETDLGCODE:
      return LinkDialogCode(lParam);
    case WM_CHAR:
      if (IsLinkKey(wParam)) Follow(picture);
      return 0;
    case WM_GETTEXT:
    case WM_GETTEXTLENGTH:
      return SendMessageW(GetWindow(picture, GW_HWNDPREV), message, wParam, lParam);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(picture, nullptr, TRUE);
      return 0;
    case WM_PAINT: {
      const LRESULT result = CallWindowProcW(own, picture, message, wParam, lParam);
      if (GetFocus() == picture) DrawFocus(picture);
      return result;
    }
    default:
      return CallWindowProcW(own, picture, message, wParam, lParam);
  }
}

}  // namespace

void MakePictureLink(HWND picture) noexcept {
  if (picture == nullptr) return;
  const LONG_PTR own = GetWindowLongPtrW(picture, GWLP_WNDPROC);
  SetWindowLongPtrW(picture, GWLP_USERDATA, own);
  // A picture that cannot find its own procedure would never be painted, and be asked to for ever: then the
  // mouse alone follows the link.
  if (own == 0 || GetWindowLongPtrW(picture, GWLP_USERDATA) != own) return;
  SetWindowLongPtrW(picture, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&LinkProcedure));
}
