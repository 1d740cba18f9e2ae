// A look into a property sheet that somebody else puts up and waits for.
#pragma once

#include <windows.h>

#include <exception>
#include <functional>
#include <vector>

#include "workbench/rig/open_sheet.h"

namespace workbench {

// Calls a visitor with the next property sheet that the thread shows, from inside the message loop that waits
// for the sheet. A sheet that the visitor leaves open, or that a page keeps open, is cancelled after it.
//
//     SheetVisit visit([](const OpenSheet& sheet) { ...; sheet.PressOk(); });
//     SendMessageW(button, BM_CLICK, 0, 0);  // returns when the sheet is gone
//     visit.Finish();
//
// Sheets may nest: of several visits the newest is served.
class SheetVisit {
 public:
  // What it throws is kept for Finish.
  using Visitor = std::function<void(const OpenSheet&)>;

  explicit SheetVisit(Visitor visitor);
  ~SheetVisit();
  SheetVisit(const SheetVisit&) = delete;
  SheetVisit& operator=(const SheetVisit&) = delete;

  // Whether the visitor has closed the sheet. Throws what the visitor threw, and std::runtime_error when no
  // sheet came up.
  [[nodiscard]] bool Finish() const;

 private:
  enum class State { Waiting, Inside, Visited, Cancelled };

  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD);
  void LookAround();
  void Visit(HWND sheet);

  Visitor visitor_;
  SheetVisit* outer_;
  std::vector<HWND> known_;  // sheets that were there before
  UINT_PTR timer_ = 0;
  State state_ = State::Waiting;
  std::exception_ptr thrown_;
};

}  // namespace workbench
