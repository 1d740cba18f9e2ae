#include "ui/framework/page_background.h"

namespace {

// High-contrast colour schemes may have white text, which cannot be read on this background.
bool IsLight(COLORREF colour) noexcept {
  return 299 * GetRValue(colour) + 587 * GetGValue(colour) + 114 * GetBValue(colour) > 128 * 1000;
}

}  // namespace

void CPageBackground::Create() noexcept {
  brush_.Reset(CreateSolidBrush(kColour));
}

HBRUSH CPageBackground::Prepare(HDC context) const noexcept {
  SetBkMode(context, TRANSPARENT);
  if (IsLight(GetSysColor(COLOR_WINDOWTEXT))) SetTextColor(context, RGB(0, 0, 0));
  return brush_.Get();
}
