#include "workbench/rig/sheet_visit.h"

#include <commctrl.h>
#include <prsht.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "workbench/rig/page_controls.h"

namespace workbench {
namespace {

constexpr UINT kTickMilliseconds = 10;

// A timer without a window has no room for an object.
thread_local SheetVisit* current = nullptr;

BOOL CALLBACK Collect(HWND window, LPARAM list) {
  const bool sheet = IsOfClass(window, L"#32770") && IsWindowVisible(window) &&
                     SendMessageW(window, PSM_GETTABCONTROL, 0, 0) != 0;
  if (sheet) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

std::vector<HWND> SheetsOfThread() {
  std::vector<HWND> sheets;
  EnumThreadWindows(GetCurrentThreadId(), Collect, reinterpret_cast<LPARAM>(&sheets));
  return sheets;
}

}  // namespace

SheetVisit::SheetVisit(Visitor visitor)
    : visitor_(std::move(visitor)),
      outer_(current),
      known_(SheetsOfThread()),
      timer_(SetTimer(nullptr, 0, kTickMilliseconds, &SheetVisit::Tick)) {
  current = this;
}

SheetVisit::~SheetVisit() {
  KillTimer(nullptr, timer_);
  current = outer_;
}

void CALLBACK SheetVisit::Tick(HWND, UINT, UINT_PTR timer, DWORD) {
  if (current && current->timer_ == timer) current->LookAround();
}

void SheetVisit::LookAround() {
  if (state_ == State::Inside || state_ == State::Cancelled) return;
  for (const HWND sheet : SheetsOfThread()) {
    // A modeless sheet that has ended has no page any more, and waits to be destroyed.
    if (std::ranges::find(known_, sheet) != known_.end() || !PropSheet_GetCurrentPageHwnd(sheet)) continue;
    if (state_ == State::Waiting) {
      Visit(sheet);
    } else {
      state_ = State::Cancelled;
      OpenSheet(sheet).PressCancel();
    }
    return;
  }
}

void SheetVisit::Visit(HWND sheet) {
  state_ = State::Inside;
  try {
    visitor_(OpenSheet(sheet));
  } catch (...) {  // not through the message loop's owner
    thrown_ = std::current_exception();
  }
  state_ = State::Visited;
}

bool SheetVisit::Finish() const {
  if (thrown_) std::rethrow_exception(thrown_);
  if (state_ == State::Waiting) throw std::runtime_error("The property sheet does not come up");
  return state_ == State::Visited;
}

}  // namespace workbench
