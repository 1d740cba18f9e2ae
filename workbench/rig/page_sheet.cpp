#include "workbench/rig/page_sheet.h"

#include <stdexcept>

namespace workbench {

PageRequest::PageRequest(Rig& rig, Device& device, DWORD request, bool accept)
    : accept_(accept), element_(rig.machine, device) {
  SP_PROPSHEETPAGE_REQUEST wanted{};
  wanted.cbSize = sizeof(wanted);
  wanted.PageRequested = request;
  wanted.DeviceInfoSet = element_.Set();
  wanted.DeviceInfoData = element_.Data();
  result = rig.dll->PropPage(&wanted, &PageRequest::Add, reinterpret_cast<LPARAM>(this));
}

BOOL CALLBACK PageRequest::Add(HPROPSHEETPAGE page, LPARAM lParam) {
  auto* self = reinterpret_cast<PageRequest*>(lParam);
  ++self->offered;
  self->page = page;
  return self->accept_ ? TRUE : FALSE;
}

PageSheet::PageSheet(Rig& rig, Device& device, const SheetLook& look) : request_(std::in_place, rig, device) {
  if (request_->page == nullptr && !request_->result) throw std::runtime_error("the export added no page");
  if (request_->page == nullptr || !request_->result)
    throw std::logic_error("the export reports another thing than it did");
  Open(request_->page, look);
}

void PageSheet::Open(HPROPSHEETPAGE page, const SheetLook& look) {
  PROPSHEETHEADERW header{};
  header.dwSize = sizeof(header);
  header.dwFlags = PSH_MODELESS | PSH_NOAPPLYNOW | PSH_NOCONTEXTHELP;
  header.hwndParent = owner_ = look.owner;
  header.pszCaption = look.caption;
  header.nPages = 1;
  header.phpage = &page;
  const INT_PTR result = PropertySheetW(&header);
  if (result == 0 || result == -1) throw std::runtime_error("the sheet did not open");
  sheet_ = reinterpret_cast<HWND>(result);
  page_ = reinterpret_cast<HWND>(SendMessageW(sheet_, PSM_GETCURRENTPAGEHWND, 0, 0));
  CenterOnScreen(sheet_);
  ShowWindow(sheet_, SW_SHOW);
  // Wine gives a program's first dialog the caption of an inactive window.
  if (GetForegroundWindow() == sheet_) SendMessageW(sheet_, WM_NCACTIVATE, TRUE, 0);
  if (owner_ != nullptr) EnableWindow(owner_, FALSE);
  if (look.painting == Painting::WhenUncovered) {
    RedrawWindow(sheet_, nullptr, nullptr, RDW_VALIDATE | RDW_ALLCHILDREN | RDW_NOFRAME | RDW_NOERASE);
    PumpMessages();
  } else {
    PaintNow(sheet_);
  }
}

void PageSheet::Close() {
  // First the owner, or the system would activate another program's window.
  if (owner_ != nullptr) EnableWindow(owner_, TRUE);
  if (IsWindow(sheet_)) DestroyWindow(sheet_);
}

std::string PageSheet::Box(int box, int label) const {
  std::string words = IsChecked(page_, box) ? "checked" : "clear";
  if (!IsWindowEnabled(Control(box))) words += ", disabled";
  if (!IsWindowEnabled(Control(label))) words += ", label disabled";
  return words;
}

void PageSheet::Check(int id, bool check) const {
  if (IsChecked(page_, id) != check) Click(id);
}

bool PageSheet::PressOk() {
  SendMessageW(sheet_, PSM_PRESSBUTTON, PSBTN_OK, 0);
  PumpMessages();
  if (!HasEnded()) return false;
  Close();
  return true;
}

void PageSheet::RunUntilClosed() {
  MSG message;
  while (!HasEnded() && GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (PropSheet_IsDialogMessage(sheet_, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  Close();
}

}  // namespace workbench
