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
// mouse); the text is asked for when the tip is about to show.
class CToolTipDialog {
 public:
  static constexpr DWORD kStyle = TTS_ALWAYSTIP | TTS_NOPREFIX | TTS_BALLOON | TTS_CLOSE;
  static constexpr UINT kToolFlags = TTF_IDISHWND | TTF_SUBCLASS;

  CToolTipDialog() = default;
  virtual ~CToolTipDialog();
  CToolTipDialog(const CToolTipDialog&) = delete;
  CToolTipDialog& operator=(const CToolTipDialog&) = delete;

 protected:
  // To be shown every message of the dialog: creates the control on WM_INITDIALOG, relays the mouse, destroys
  // the control with the dialog.
  void ProcessToolTip(const MSG& message);
  // What every settings page does at its initialisation: a wide balloon titled "Information:", slow to come
  // and slow to go.
  void SetUpBalloon() const;
  // Makes a control a tool, once more if it is one already; a null control is left out.
  void AddTool(HWND control) const;
  // Answers a request for the text of a tip from the page's table; controls without a row get the text
  // `otherwise`, and 0 stands for the empty text, which shows no tip.
  void AnswerText(NMTTDISPINFOW& request, std::span<const ToolTipText> table, UINT otherwise = 0);

  [[nodiscard]] HWND ToolTip() const noexcept { return toolTip_; }

 private:
  void CreateToolTip(HWND dialog);
  void DestroyToolTip() noexcept;

  HWND dialog_ = nullptr;
  HWND toolTip_ = nullptr;
  std::wstring text_;  // what the tooltip control was last given; it keeps the pointer
};
