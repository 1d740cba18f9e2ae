// Balloon tips for the controls of a dialog. Windows only.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <span>
#include <string>

#include "base/wide_string.h"

// One row of a page's tip table: the control and the id of its text in the string table.
struct ToolTipText {
  int control;
  UINT stringId;
};

// Mixed into a page: owns the tooltip control and the text of the tip that is shown. The dialog and each of
// its child windows is a tool, labels and other static controls included (they need SS_NOTIFY to see the
// mouse). The text is requested when the tip is about to show (TTN_GETDISPINFOW).
//
// A tooltip control that cannot be made is not reported: the page has no tips then. All members belong to the
// dialog's thread.
class CToolTipDialog {
 public:
  static constexpr DWORD kStyle = TTS_ALWAYSTIP | TTS_NOPREFIX | TTS_BALLOON | TTS_CLOSE;
  static constexpr UINT kToolFlags = TTF_IDISHWND | TTF_SUBCLASS;

  CToolTipDialog() = default;
  virtual ~CToolTipDialog();
  CToolTipDialog(const CToolTipDialog&) = delete;
  CToolTipDialog& operator=(const CToolTipDialog&) = delete;

 protected:
  // To be called with every message of the dialog: creates the control on WM_INITDIALOG, relays the mouse,
  // destroys the control with the dialog.
  void ProcessToolTip(const MSG& message);
  // What every settings page does at its initialisation: a wide balloon titled "Information:" that comes
  // after a second and stays long.
  void SetUpBalloon() const;
  // Makes a control a tool, also one that is a tool already; for null nothing happens.
  void AddTool(HWND control) const;
  // Answers a request for the text of a tip from the page's table. Controls without a row get the string
  // `otherwise`; with 0 they get the empty text, which shows no tip.
  void AnswerText(NMTTDISPINFOW& request, std::span<const ToolTipText> table, UINT otherwise = 0);

  // The tooltip control; null while there is none.
  [[nodiscard]] HWND ToolTip() const noexcept { return toolTip_; }

 private:
  void CreateToolTip(HWND dialog);
  void DestroyToolTip() noexcept;

  HWND dialog_ = nullptr;
  HWND toolTip_ = nullptr;
  std::wstring text_;  // what the tooltip control was last given; it keeps the pointer
};
