#include "ui/framework/property_page.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/export_guard.h"
#include "base/module_instance.h"

namespace {

// The sheet's notifications that every page answers with 0; others stay unanswered.
constexpr UINT kNeutralNotifications[] = {PSN_SETACTIVE,
                                          PSN_KILLACTIVE,
                                          PSN_RESET,
                                          PSN_HELP,
                                          PSN_QUERYCANCEL,
                                          PSN_WIZBACK,
                                          PSN_WIZNEXT,
                                          PSN_WIZFINISH,
                                          PSN_TRANSLATEACCELERATOR,
                                          PSN_QUERYINITIALFOCUS};

CPropertyPageImpl* PageOf(HWND window) noexcept {
  return reinterpret_cast<CPropertyPageImpl*>(GetWindowLongPtrW(window, DWLP_USER));
}

}  // namespace

CPropertyPageImpl::CPropertyPageImpl(WORD dialogId, const wchar_t* title) noexcept {
  descriptor_.dwSize = sizeof(descriptor_);
  descriptor_.dwFlags = PSP_USETITLE | PSP_USECALLBACK;
  descriptor_.hInstance = ModuleInstance();
  descriptor_.pszTemplate = MAKEINTRESOURCEW(dialogId);
  descriptor_.pszTitle = title;
  descriptor_.pfnDlgProc = &CPropertyPageImpl::StartDialogProcedure;
  descriptor_.pfnCallback = &CPropertyPageImpl::PageCallback;
  descriptor_.lParam = reinterpret_cast<LPARAM>(this);
}

CPropertyPageImpl::~CPropertyPageImpl() {
  Detach();
}

HPROPSHEETPAGE CPropertyPageImpl::Create() {
  const CActivationScope scope(activation_);
  PROPSHEETPAGEW descriptor = descriptor_;
  // The sheet may be another program's: it creates the dialog under this context, not under its own.
  if (activation_.Get() != INVALID_HANDLE_VALUE) {
    descriptor.dwFlags |= PSP_USEFUSIONCONTEXT;
    descriptor.hActCtx = activation_.Get();
  }
  return CreatePropertySheetPageW(&descriptor);
}

HPROPSHEETPAGE CPropertyPageImpl::CreateOwned(std::shared_ptr<CPropertyPageImpl> page) {
  CPropertyPageImpl& object = *page;
  const HPROPSHEETPAGE handle = object.Create();
  if (handle != nullptr) object.self_ = std::move(page);
  return handle;
}

// Windows calls this before it creates the dialog, and when the sheet releases the page, also one that was
// never shown.
UINT CALLBACK CPropertyPageImpl::PageCallback(HWND, UINT event, PROPSHEETPAGEW* descriptor) {
  if (event == PSPCB_RELEASE) {
    auto* page = reinterpret_cast<CPropertyPageImpl*>(descriptor->lParam);
    page->Detach();
    // The last hold, unless a handler of the page is still running and has its own.
    // cppcheck-suppress unreadVariable ; it is held
    const std::shared_ptr<CPropertyPageImpl> released = std::move(page->self_);
  }
  return TRUE;
}

INT_PTR CALLBACK CPropertyPageImpl::StartDialogProcedure(HWND window, UINT message, WPARAM wParam,
                                                         LPARAM lParam) {
  if (message != WM_INITDIALOG) return FALSE;
  const auto* descriptor = reinterpret_cast<const PROPSHEETPAGEW*>(lParam);
  reinterpret_cast<CPropertyPageImpl*>(descriptor->lParam)->Attach(window);
  return DialogProcedure(window, message, wParam, lParam);
}

INT_PTR CALLBACK CPropertyPageImpl::DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  CPropertyPageImpl* const page = PageOf(window);
  if (page == nullptr) return FALSE;
  // cppcheck-suppress unreadVariable ; it is held
  const std::shared_ptr<CPropertyPageImpl> keepAlive = page->self_;
  return GuardBoundary(INT_PTR{FALSE}, [&] {
    const CActivationScope scope(page->activation_);
    return page->Dispatch(MSG{window, message, wParam, lParam, 0, {}});
  });
}

INT_PTR CPropertyPageImpl::Dispatch(const MSG& message) {
  BeforeDispatch(message);
  switch (message.message) {
    case WM_INITDIALOG:
      OnInitDialog();
      isComplete_ = true;
      return TRUE;
    case WM_TIMER:
      return OnTimer(message.wParam) ? Answer(0) : FALSE;
    case WM_CLOSE:
      return OnClose() ? Answer(0) : FALSE;
    case WM_NOTIFY:
      return DispatchNotify(*reinterpret_cast<NMHDR*>(message.lParam));
    case WM_HELP:
      return OnHelp(*reinterpret_cast<const HELPINFO*>(message.lParam)) ? Answer(TRUE) : FALSE;
    case WM_COMMAND:
      if (HIWORD(message.wParam) != BN_CLICKED) return FALSE;
      return OnClicked(LOWORD(message.wParam)) ? Answer(0) : FALSE;
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
      // The brush is the dialog procedure's own result, not its message result.
      return reinterpret_cast<INT_PTR>(OnControlColour(reinterpret_cast<HDC>(message.wParam)));
    case WM_ERASEBKGND:
      return EraseBackground(reinterpret_cast<HDC>(message.wParam));
    case WM_NCDESTROY:
      Detach();
      return FALSE;
    default:
      return FALSE;
  }
}

// A themed sheet would paint its own texture here, and only the labels would have the page's colour.
INT_PTR CPropertyPageImpl::EraseBackground(HDC context) {
  const HBRUSH brush = OnControlColour(context);
  RECT area;
  if (brush == nullptr || !GetClientRect(window_, &area)) return FALSE;
  FillRect(context, &area, brush);
  return Answer(TRUE);
}

INT_PTR CPropertyPageImpl::DispatchNotify(NMHDR& header) {
  if (header.code == TTN_GETDISPINFOW) {
    return OnToolTipText(reinterpret_cast<NMTTDISPINFOW&>(header)) ? Answer(0) : FALSE;
  }
  // When memory ran out while the page was filled, its boxes mean nothing, and nothing is written.
  if (header.code == PSN_APPLY) return Answer(isComplete_ ? OnApply() : PSNRET_NOERROR);
  const bool neutral = std::find(std::begin(kNeutralNotifications), std::end(kNeutralNotifications),
                                 header.code) != std::end(kNeutralNotifications);
  return neutral ? Answer(0) : FALSE;
}

INT_PTR CPropertyPageImpl::Answer(LRESULT result) const noexcept {
  SetWindowLongPtrW(window_, DWLP_MSGRESULT, result);
  return TRUE;
}

void CPropertyPageImpl::Attach(HWND window) noexcept {
  window_ = window;
  SetWindowLongPtrW(window, DWLP_USER, reinterpret_cast<LONG_PTR>(this));
  SetWindowLongPtrW(window, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(&CPropertyPageImpl::DialogProcedure));
}

// Messages that still come to the window find no object afterwards.
void CPropertyPageImpl::Detach() noexcept {
  const HWND window = std::exchange(window_, nullptr);
  if (window != nullptr && PageOf(window) == this) SetWindowLongPtrW(window, DWLP_USER, 0);
}
