// The background that all pages share. Windows only.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

// Owns the brush of a page and deletes it with the object, which lives as long as the page's window. The
// colour is the product's and does not follow the user's colour scheme. One object serves one thread.
class CPageBackground {
 public:
  static constexpr COLORREF kColour = 0xF6F7F8;  // blue F6, green F7, red F8

  // To be called when the page's dialog is initialised; a second call makes the brush anew. Failure is not
  // reported: the page then has the sheet's background.
  void Create() noexcept;
  // The answer to WM_CTLCOLORDLG and WM_CTLCOLORSTATIC: prepares `context` so that texts are drawn without a
  // background of their own, and returns the brush, which stays the object's; null before Create.
  [[nodiscard]] HBRUSH Prepare(HDC context) const noexcept;

 private:
  CBrushHandle brush_;
};
