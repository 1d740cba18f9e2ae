#include "ui/framework/hyperlink.h"

#include <windowsx.h>

#include <commctrl.h>
#include <shellapi.h>

#include <string>
#include <utility>

#include "base/export_guard.h"
#include "base/module_instance.h"
#include "ui/framework/link_keys.h"
#include "ui/framework/link_text.h"

namespace {

constexpr wchar_t kColourKey[] = L"Software\\Microsoft\\Internet Explorer\\Settings";
constexpr wchar_t kColourValue[] = L"Anchor Color";
constexpr wchar_t kVisitedColourValue[] = L"Anchor Color Visited";

TTTOOLINFOW ToolOf(HWND window, const CWideString& text) noexcept {
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof(tool);
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = window;
  tool.uId = reinterpret_cast<UINT_PTR>(window);
  tool.lpszText = const_cast<wchar_t*>(text.Text());  // only read
  return tool;
}

// Overrides a colour when the user has set another one for links everywhere.
void ReadColour(HKEY key, const wchar_t* name, COLORREF& colour) {
  wchar_t text[64] = {};
  DWORD size = sizeof(text) - sizeof(wchar_t);
  DWORD type = REG_NONE;
  auto* const bytes = reinterpret_cast<BYTE*>(text);
  if (RegQueryValueExW(key, name, nullptr, &type, bytes, &size) != ERROR_SUCCESS || type != REG_SZ) return;
  if (const auto parsed = ParseLinkColour(text)) colour = *parsed;
}

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

}  // namespace

CHyperLink::~CHyperLink() {
  Detach();
}

bool CHyperLink::Attach(HWND control, bool tags) {
  if (control == nullptr || window_ != nullptr) return false;
  window_ = control;
  tags_ = tags;
  NoticeMouse();
  cursor_ = LoadCursorW(nullptr, IDC_HAND);
  MakeFonts();
  ReadText();
  MakeToolTip();
  ReadColours();
  // The static control makes no use of its user data.
  SetWindowLongPtrW(control, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  control_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CHyperLink::WindowProcedure)));
  FindLink();
  Redraw();
  return true;
}

// A click may come before the first painting, so the link's area is found at once.
void CHyperLink::FindLink() {
  const HDC context = GetDC(window_);
  if (context == nullptr) return;
  Draw(context);
  ReleaseDC(window_, context);
}

// The window may have gone while another program was asked to open the target.
void CHyperLink::Redraw() const noexcept {
  if (window_ != nullptr) InvalidateRect(window_, nullptr, TRUE);
}

// The tip is a pop-up of the sheet and has been destroyed before the page when the whole sheet goes.
void CHyperLink::Detach() noexcept {
  const HWND toolTip = std::exchange(toolTip_, nullptr);
  if (IsWindow(toolTip)) DestroyWindow(toolTip);
  const HWND window = std::exchange(window_, nullptr);
  if (window == nullptr) return;
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(control_));
  SetWindowLongPtrW(window, GWLP_USERDATA, 0);
}

// Without the style the control lets the mouse through to the dialog.
void CHyperLink::NoticeMouse() const {
  wchar_t name[16];
  if (GetClassNameW(window_, name, ARRAYSIZE(name)) == 0 || lstrcmpiW(name, L"static") != 0) return;
  SetWindowLongPtrW(window_, GWL_STYLE, GetWindowLongPtrW(window_, GWL_STYLE) | SS_NOTIFY);
}

void CHyperLink::MakeFonts() {
  font_ = reinterpret_cast<HFONT>(SendMessageW(window_, WM_GETFONT, 0, 0));
  if (font_ == nullptr) font_ = static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
  LOGFONTW description;
  if (GetObjectW(font_, sizeof(description), &description) == 0) return;
  description.lfUnderline = TRUE;
  underlined_.Reset(CreateFontIndirectW(&description));
}

void CHyperLink::MakeToolTip() {
  toolTip_ =
      CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                      CW_USEDEFAULT, CW_USEDEFAULT, window_, nullptr, ModuleInstance(), nullptr);
  if (toolTip_ == nullptr) return;
  SendMessageW(toolTip_, TTM_ACTIVATE, TRUE, 0);
  TTTOOLINFOW tool = ToolOf(window_, target_);
  SendMessageW(toolTip_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void CHyperLink::ReadColours() {
  CRegistryKey key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kColourKey, 0, KEY_READ, key.Put()) != ERROR_SUCCESS) return;
  ReadColour(key.Get(), kColourValue, colour_);
  ReadColour(key.Get(), kVisitedColourValue, visitedColour_);
}

void CHyperLink::ReadText() {
  text_ = TextOf(window_);
  if (target_.IsEmpty()) target_ = SplitLinkText(text_.View(), tags_).link;
}

void CHyperLink::SetTarget(CWideString target) {
  target_ = std::move(target);
  if (toolTip_ == nullptr) return;
  TTTOOLINFOW tool = ToolOf(window_, target_);
  SendMessageW(toolTip_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
}

LRESULT CALLBACK CHyperLink::WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const link = reinterpret_cast<CHyperLink*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (link == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  return GuardBoundary(LRESULT{0}, [&] { return link->Dispatch(message, wParam, lParam); });
}

LRESULT CHyperLink::CallControl(UINT message, WPARAM wParam, LPARAM lParam) const {
  return CallWindowProcW(control_, window_, message, wParam, lParam);
}

LRESULT CHyperLink::Dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      return OnPaint();
    case WM_PRINTCLIENT:
      Draw(reinterpret_cast<HDC>(wParam));
      return 0;
    case WM_ERASEBKGND:
      return TRUE;  // drawn together with the text
    case WM_SETCURSOR:
      return OnSetCursor(wParam, lParam);
    case WM_LBUTTONDOWN:
      return OnButtonDown(lParam);
    case WM_LBUTTONUP:
      return OnButtonUp(lParam);
    case WM_CHAR:
      return OnCharacter(wParam);
    case WM_GETDLGCODE:
      return LinkDialogCode(lParam);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      Redraw();
      return 0;
    case WM_SETTEXT:
    case WM_SETFONT:
      return OnNewLook(message, wParam, lParam);
    case WM_NCDESTROY:
      return OnDestroyed(wParam, lParam);
    default:
      return CallControl(message, wParam, lParam);
  }
}

LRESULT CHyperLink::OnPaint() {
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(window_, &paint);
  if (context != nullptr) Draw(context);
  EndPaint(window_, &paint);
  return 0;
}

LRESULT CHyperLink::OnSetCursor(WPARAM wParam, LPARAM lParam) {
  if (!IsCursorOnLink()) return CallControl(WM_SETCURSOR, wParam, lParam);
  SetCursor(cursor_);
  return TRUE;
}

LRESULT CHyperLink::OnButtonDown(LPARAM position) {
  if (!IsOnLink(position)) return 0;
  SetFocus(window_);
  SetCapture(window_);
  return 0;
}

LRESULT CHyperLink::OnButtonUp(LPARAM position) {
  if (GetCapture() != window_) return 0;
  ReleaseCapture();
  if (IsOnLink(position)) Navigate();
  return 0;
}

LRESULT CHyperLink::OnCharacter(WPARAM character) {
  if (IsLinkKey(character)) Navigate();
  return 0;
}

// The control has another text or another font, so the link's area changes.
LRESULT CHyperLink::OnNewLook(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = CallControl(message, wParam, lParam);
  ReadText();
  MakeFonts();
  FindLink();
  Redraw();
  return result;
}

LRESULT CHyperLink::OnDestroyed(WPARAM wParam, LPARAM lParam) {
  const HWND window = window_;
  const WNDPROC control = control_;
  Detach();
  return CallWindowProcW(control, window, WM_NCDESTROY, wParam, lParam);
}

bool CHyperLink::IsOnLink(LPARAM position) const noexcept {
  const POINT point = {GET_X_LPARAM(position), GET_Y_LPARAM(position)};
  return PtInRect(&linkArea_, point) != FALSE;
}

bool CHyperLink::IsCursorOnLink() const noexcept {
  POINT point;
  return GetCursorPos(&point) && ScreenToClient(window_, &point) && PtInRect(&linkArea_, point);
}

void CHyperLink::Draw(HDC context) {
  const int saved = SaveDC(context);
  RECT rest;
  GetClientRect(window_, &rest);
  const auto brush = reinterpret_cast<HBRUSH>(SendMessageW(GetParent(window_), WM_CTLCOLORSTATIC,
                                                           reinterpret_cast<WPARAM>(context),
                                                           reinterpret_cast<LPARAM>(window_)));
  if (brush != nullptr) FillRect(context, &rest, brush);
  SetBkMode(context, TRANSPARENT);
  const COLORREF plain = GetTextColor(context);
  const LinkText parts = SplitLinkText(text_.View(), tags_);
  DrawPart(context, parts.before, font_, plain, rest, nullptr);
  DrawPart(context, parts.link, underlined_ ? underlined_.Get() : font_, visited_ ? visitedColour_ : colour_,
           rest, &linkArea_);
  DrawPart(context, parts.after, font_, plain, rest, nullptr);
  SetTextColor(context, RGB(0, 0, 0));  // a focus rectangle is drawn in the colours of the context
  if (GetFocus() == window_) DrawFocusRect(context, &linkArea_);
  RestoreDC(context, saved);
}

// Draws at the left of `rest` and takes that part off it.
void CHyperLink::DrawPart(HDC context, std::wstring_view text, HFONT font, COLORREF colour, RECT& rest,
                          RECT* covered) {
  SelectObject(context, font);
  SetTextColor(context, colour);
  RECT area = rest;
  const int length = static_cast<int>(text.size());
  constexpr UINT kFormat = DT_SINGLELINE | DT_NOPREFIX;  // at the left and the top, which are 0
  if (length != 0) DrawTextW(context, text.data(), length, &area, kFormat | DT_CALCRECT);
  if (length == 0) area.right = area.left;
  if (area.right > rest.right) area.right = rest.right;
  if (length != 0) DrawTextW(context, text.data(), length, &area, kFormat);
  rest.left = area.right;
  if (covered != nullptr) *covered = area;
}

void CHyperLink::Navigate() {
  ShellExecuteW(nullptr, L"open", target_.Text(), nullptr, nullptr, SW_SHOWNORMAL);
  visited_ = true;
  Redraw();
}
