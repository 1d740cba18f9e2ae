#include "ui/framework/picture_link.h"

#include "base/module_instance.h"
#include "base/resource_ids.h"
#include "base/unique_handle.h"
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

using CBitmapHandle = CUniqueHandle<GdiHandleTraits<HBITMAP>>;

// Lays the bitmap over what is there, as large as `area`.
void Blend(HDC context, const RECT& area) noexcept {
  // The control's own copy of the bitmap need not have kept the alpha values; a DIB section has.
  const CBitmapHandle bitmap(static_cast<HBITMAP>(
      LoadImageW(ModuleInstance(), MAKEINTRESOURCEW(IDB_HELP), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
  BITMAP size;
  if (GetObjectW(bitmap.Get(), sizeof(size), &size) == 0) return;
  const HDC memory = CreateCompatibleDC(context);
  if (memory == nullptr) return;
  const HGDIOBJ before = SelectObject(memory, bitmap.Get());
  constexpr BLENDFUNCTION kOver{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  GdiAlphaBlend(context, 0, 0, area.right, area.bottom, memory, 0, 0, size.bmWidth, size.bmHeight, kOver);
  SelectObject(memory, before);
  DeleteDC(memory);
}

// A static control draws a bitmap without its alpha values: as a square, on pages of another colour.
void Draw(HWND picture, HDC context) noexcept {
  const int saved = SaveDC(context);
  RECT area;
  GetClientRect(picture, &area);
  const auto brush = reinterpret_cast<HBRUSH>(SendMessageW(GetParent(picture), WM_CTLCOLORSTATIC,
                                                           reinterpret_cast<WPARAM>(context),
                                                           reinterpret_cast<LPARAM>(picture)));
  if (brush != nullptr) FillRect(context, &area, brush);
  Blend(context, area);
  RestoreDC(context, saved);
  if (GetFocus() == picture) DrawFocusRect(context, &area);
}

LRESULT OnPaint(HWND picture) noexcept {
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(picture, &paint);
  if (context != nullptr) Draw(picture, context);
  EndPaint(picture, &paint);
  return 0;
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
    case WM_PAINT:
      return OnPaint(picture);
    case WM_PRINTCLIENT:
      Draw(picture, reinterpret_cast<HDC>(wParam));
      return 0;
    default:
      return CallWindowProcW(own, picture, message, wParam, lParam);
  }
}

}  // namespace

void MakePictureLink(HWND picture) noexcept {
  if (picture == nullptr) return;
  const LONG_PTR own = GetWindowLongPtrW(picture, GWLP_WNDPROC);
  SetWindowLongPtrW(picture, GWLP_USERDATA, own);
  // Without its own procedure the picture would not work at all, so it stays as it is, for the mouse only.
  if (own == 0 || GetWindowLongPtrW(picture, GWLP_USERDATA) != own) return;
  SetWindowLongPtrW(picture, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&LinkProcedure));
}
