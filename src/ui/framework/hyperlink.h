// A static control that is a link. Windows only.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"
#include "base/wide_string.h"

// Takes a control of a dialog over and makes a link of it: underlined and coloured text, the hand cursor, a
// tip that shows where it leads, a focus rectangle, and on a click, Enter or Space the target is opened in
// the user's browser. The control's own text stays its text.
//
// The object must outlive the control or be destroyed on the control's thread, to which everything belongs.
// Parts that cannot be made, such as the tip or the font, are missing without a report; the link works
// without them.
class CHyperLink {
 public:
  CHyperLink() = default;
  ~CHyperLink();
  CHyperLink(const CHyperLink&) = delete;
  CHyperLink& operator=(const CHyperLink&) = delete;

  // Takes the control over. The target is the control's text until SetTarget; with `tags`, only the text
  // between
  // "<A>" and "</A>" is link and the tags are not shown (SplitLinkText). False when the control is null or
  // the object has one already.
  bool Attach(HWND control, bool tags = false);
  // What is opened, a web address or any other text that the shell opens, and shown as the tip.
  void SetTarget(CWideString target);
  // Whether the target has been opened from this object.
  [[nodiscard]] bool IsVisited() const noexcept { return visited_; }

 private:
  // The procedure that replaces the control's own while the object has it; messages it does not know go on
  // there.
  static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  [[nodiscard]] LRESULT Dispatch(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT CallControl(UINT message, WPARAM wParam, LPARAM lParam) const;
  // Gives the control its own procedure back and destroys the tip. May be repeated.
  void Detach() noexcept;

  // What Attach prepares.
  void NoticeMouse() const;
  void MakeFonts();
  void MakeToolTip();
  void ReadColours();
  void ReadText();
  void FindLink();
  void Redraw() const noexcept;

  // Handlers; each returns the message's result.
  [[nodiscard]] LRESULT OnPaint();
  [[nodiscard]] LRESULT OnSetCursor(WPARAM wParam, LPARAM lParam);
  [[nodiscard]] LRESULT OnButtonDown(LPARAM position);
  [[nodiscard]] LRESULT OnButtonUp(LPARAM position);
  [[nodiscard]] LRESULT OnCharacter(WPARAM character);
  [[nodiscard]] LRESULT OnNewLook(UINT message, WPARAM wParam, LPARAM lParam);
  [[nodiscard]] LRESULT OnDestroyed(WPARAM wParam, LPARAM lParam);
  // Whether the cursor, respectively a position in the control's coordinates, is over the link's text.
  [[nodiscard]] bool IsCursorOnLink() const noexcept;
  [[nodiscard]] bool IsOnLink(LPARAM position) const noexcept;
  void Draw(HDC context);
  void DrawPart(HDC context, std::wstring_view text, HFONT font, COLORREF colour, RECT& rest, RECT* covered);
  // Opens the target; the link counts as visited from then on, whether the shell could open it or not.
  void Navigate();

  HWND window_ = nullptr;
  HWND toolTip_ = nullptr;
  WNDPROC control_ = nullptr;  // the control's own window procedure
  HCURSOR cursor_ = nullptr;   // Windows' own, not to be destroyed
  HFONT font_ = nullptr;       // the control's, owned by the dialog
  CFontHandle underlined_;
  CWideString text_;
  CWideString target_;
  RECT linkArea_{};  // of the text that was last drawn
  COLORREF colour_ = 0xFF0000;
  COLORREF visitedColour_ = 0x800080;
  bool tags_ = false;
  bool visited_ = false;
};
