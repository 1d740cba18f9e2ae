// A look into a property sheet that somebody else puts up and waits for.
#pragma once

#include <windows.h>

#include <exception>
#include <functional>
#include <vector>

namespace workbench {

// Calls a visitor with the next property sheet that the thread shows, from inside the message loop that waits
// for the sheet, and then presses the button that the visitor names. A sheet that stays open all the same,
// because a page refuses, is cancelled. One visit at a time per thread:
//
//     SheetVisit visit([](HWND sheet) { ...; return PSBTN_CANCEL; });
//     SendMessageW(button, BM_CLICK, 0, 0);  // returns when the sheet is gone
//     visit.Finish();
class SheetVisit {
 public:
  // Returns PSBTN_OK or PSBTN_CANCEL. What it throws is kept for Finish, and cancels the sheet.
  using Visitor = std::function<int(HWND sheet)>;

  explicit SheetVisit(Visitor visitor);
  ~SheetVisit();
  SheetVisit(const SheetVisit&) = delete;
  SheetVisit& operator=(const SheetVisit&) = delete;

  // Throws what the visitor threw, and std::runtime_error when no sheet came up or it did not close by the
  // visitor's button.
  void Finish() const;

 private:
  enum class State { Waiting, Inside, Pressed, Cancelled };

  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD);
  void LookAround();
  void Visit(HWND sheet);

  Visitor visitor_;
  std::vector<HWND> known_;  // sheets that were there before
  UINT_PTR timer_ = 0;
  State state_ = State::Waiting;
  std::exception_ptr thrown_;
};

}  // namespace workbench
