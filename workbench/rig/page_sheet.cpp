#include "workbench/rig/page_sheet.h"

#include <commctrl.h>

#include <stdexcept>
#include <utility>

#include "workbench/rig/on_screen.h"

namespace workbench {
namespace {

constexpr std::size_t kMostPages = 8;

BOOL CALLBACK AddPage(HPROPSHEETPAGE page, LPARAM pages) {
  auto& list = *reinterpret_cast<std::vector<HPROPSHEETPAGE>*>(pages);
  if (list.size() == kMostPages) return FALSE;
  list.push_back(page);
  return TRUE;
}

std::vector<HPROPSHEETPAGE> AskForPages(const Dll& dll, DeviceElement& element) {
  SP_PROPSHEETPAGE_REQUEST request{};
  request.cbSize = sizeof request;
  request.PageRequested = SPPSR_ENUM_ADV_DEVICE_PROPERTIES;
  request.DeviceInfoSet = element.Set();
  request.DeviceInfoData = element.Data();
  std::vector<HPROPSHEETPAGE> pages;
  if (!dll.PropPage) throw std::runtime_error("The DLL has no page provider");
  if (!dll.PropPage(&request, AddPage, reinterpret_cast<LPARAM>(&pages))) {
    throw std::runtime_error("The DLL refuses the page");
  }
  if (pages.empty()) throw std::runtime_error("The DLL adds no page");
  return pages;
}

}  // namespace

PageSheet::PageSheet(Machine& machine, const Dll& dll, Device& device, const std::wstring& caption,
                     HWND owner)
    : element_(machine, device), owner_(owner) {
  std::vector<HPROPSHEETPAGE> pages = AskForPages(dll, element_);
  PROPSHEETHEADERW header{};
  header.dwSize = sizeof header;
  header.dwFlags = PSH_MODELESS | PSH_NOAPPLYNOW | PSH_NOCONTEXTHELP;
  header.hwndParent = owner;
  header.pszCaption = caption.c_str();
  header.nPages = static_cast<UINT>(pages.size());
  header.phpage = pages.data();
  const INT_PTR sheet = PropertySheetW(&header);
  if (sheet == 0 || sheet == -1) throw std::runtime_error("The property sheet does not open");
  sheet_ = reinterpret_cast<HWND>(sheet);
  CenterOnScreen(sheet_);
  ShowWindow(sheet_, SW_SHOW);
  // Wine gives a program's first dialog the caption of an inactive window.
  if (GetForegroundWindow() == sheet_) SendMessageW(sheet_, WM_NCACTIVATE, TRUE, 0);
  if (owner_) EnableWindow(owner_, FALSE);
}

PageSheet::~PageSheet() {
  if (!IsOpen()) return;
  PropSheet_PressButton(sheet_, PSBTN_CANCEL);
  Destroy();
}

HWND PageSheet::Page() const {
  return IsOpen() ? PropSheet_GetCurrentPageHwnd(sheet_) : nullptr;
}

bool PageSheet::IsOpen() const {
  return sheet_ && IsWindow(sheet_);
}

void PageSheet::Settle() const {
  PaintNow(sheet_);
}

void PageSheet::RunUntilClosed() {
  MSG message;
  while (IsOpen() && GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (Take(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

bool PageSheet::Take(MSG& message) {
  if (!IsOpen()) return false;
  const bool taken = PropSheet_IsDialogMessage(sheet_, &message) != 0;
  // A modeless sheet whose buttons were used has no current page any more, and waits to be destroyed.
  if (!PropSheet_GetCurrentPageHwnd(sheet_)) Destroy();
  return taken;
}

void PageSheet::Destroy() {
  // First the owner, or the system would activate another program's window.
  if (owner_) EnableWindow(owner_, TRUE);
  if (const HWND sheet = std::exchange(sheet_, nullptr)) DestroyWindow(sheet);
}

}  // namespace workbench
