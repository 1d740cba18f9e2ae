// The background that all pages share. Windows only.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

// Owns the brush of a page. The colour is the product's and does not follow the user's colour scheme.
class CPageBackground {
 public:
  static constexpr COLORREF kColour = 0xF6F7F8;  // blue F6, green F7, red F8

  // At the initialisation of the page's dialog; a second call makes the brush anew.
  void Create() noexcept;
  // Answers WM_CTLCOLORDLG and WM_CTLCOLORSTATIC: texts are drawn without a background of their own. The
  // brush stays the object's; null before Create.
  [[nodiscard]] HBRUSH Prepare(HDC context) const noexcept;

 private:
  CBrushHandle brush_;
};
