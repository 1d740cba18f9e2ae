#include "ui/framework/tooltip_dialog.h"

#include <utility>

#include "base/module_instance.h"

namespace {

constexpr UINT kLastRelayedMouseMessage = 526;  // WM_MOUSEHWHEEL
constexpr LPARAM kMaximumTipWidth = 400;        // pixels
constexpr LPARAM kInitialDelay = 1000;          // milliseconds, as the two below
constexpr LPARAM kReshowDelay = 2000;
constexpr LPARAM kAutoPopDelay = 30000;

TTTOOLINFOW ToolOf(HWND dialog, HWND tool) noexcept {
  TTTOOLINFOW info{};
  info.cbSize = sizeof(info);
  info.uFlags = CToolTipDialog::kToolFlags;
  info.hwnd = dialog;
  info.uId = reinterpret_cast<UINT_PTR>(tool);
  info.lpszText = LPSTR_TEXTCALLBACKW;
  return info;
}

void AddToolTo(HWND toolTip, HWND dialog, HWND tool) noexcept {
  TTTOOLINFOW info = ToolOf(dialog, tool);
  SendMessageW(toolTip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&info));
}

struct ChildVisit {
  HWND toolTip;
  HWND dialog;
};

BOOL CALLBACK AddChildTool(HWND child, LPARAM lParam) noexcept {
  const auto& visit = *reinterpret_cast<const ChildVisit*>(lParam);
  AddToolTo(visit.toolTip, visit.dialog, child);
  return TRUE;
}

}  // namespace

CToolTipDialog::~CToolTipDialog() {
  DestroyToolTip();
}

void CToolTipDialog::ProcessToolTip(const MSG& message) {
  if (message.message == WM_INITDIALOG) {
    CreateToolTip(message.hwnd);
  } else if (message.message == WM_NCDESTROY) {
    DestroyToolTip();
  } else if (message.message >= WM_MOUSEFIRST && message.message <= kLastRelayedMouseMessage) {
    MSG relayed = message;
    SendMessageW(toolTip_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
  }
}

void CToolTipDialog::CreateToolTip(HWND dialog) {
  dialog_ = dialog;
  toolTip_ = CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP | kStyle, CW_USEDEFAULT, CW_USEDEFAULT,
                             CW_USEDEFAULT, CW_USEDEFAULT, dialog, nullptr, ModuleInstance(), nullptr);
  if (toolTip_ == nullptr) return;
  AddToolTo(toolTip_, dialog, dialog);
  const ChildVisit visit{toolTip_, dialog};
  EnumChildWindows(dialog, &AddChildTool, reinterpret_cast<LPARAM>(&visit));
  // Width 0 lets a line feed in a text start a new line.
  SendMessageW(toolTip_, TTM_SETMAXTIPWIDTH, 0, 0);
  SendMessageW(toolTip_, TTM_ACTIVATE, TRUE, 0);
}

// The control is a pop-up of the sheet, not a child of the page, and would outlive the page's window. When
// the whole sheet goes, it has been destroyed before the page.
void CToolTipDialog::DestroyToolTip() noexcept {
  const HWND toolTip = std::exchange(toolTip_, nullptr);
  if (IsWindow(toolTip)) DestroyWindow(toolTip);
}

void CToolTipDialog::SetUpBalloon() const {
  SendMessageW(toolTip_, TTM_SETMAXTIPWIDTH, 0, kMaximumTipWidth);
  SendMessageW(toolTip_, TTM_SETTITLEW, TTI_INFO, reinterpret_cast<LPARAM>(L"Information:"));
  SendMessageW(toolTip_, TTM_SETDELAYTIME, TTDT_INITIAL, kInitialDelay);
  SendMessageW(toolTip_, TTM_SETDELAYTIME, TTDT_RESHOW, kReshowDelay);
  SendMessageW(toolTip_, TTM_SETDELAYTIME, TTDT_AUTOPOP, kAutoPopDelay);
}

void CToolTipDialog::AddTool(HWND control) const {
  if (control != nullptr) AddToolTo(toolTip_, dialog_, control);
}

void CToolTipDialog::AnswerText(NMTTDISPINFOW& request, std::span<const ToolTipText> table, UINT otherwise) {
  const int control = GetDlgCtrlID(reinterpret_cast<HWND>(request.hdr.idFrom));
  UINT stringId = otherwise;
  for (const ToolTipText& row : table) {
    if (row.control == control) stringId = row.stringId;
  }
  CWideString text;
  if (stringId != 0) text.LoadFromTable(stringId);
  text_ = text.View();
  request.lpszText = text_.data();
}
