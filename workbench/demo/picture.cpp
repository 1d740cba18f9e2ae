#include "workbench/demo/picture.h"

// GDI+ is written for COM's names.
#include <objbase.h>
// GDI+ has min and max of its own in mind.
#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include <memory>
#include <stdexcept>

#include "workbench/rig/page_controls.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

using UniqueBitmap = CUniqueHandle<GdiHandleTraits<HBITMAP>>;

class GdiplusSession {
 public:
  GdiplusSession() {
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok) {
      throw std::runtime_error("GDI+ does not start");
    }
  }
  ~GdiplusSession() { Gdiplus::GdiplusShutdown(token_); }
  GdiplusSession(const GdiplusSession&) = delete;
  GdiplusSession& operator=(const GdiplusSession&) = delete;

 private:
  ULONG_PTR token_ = 0;
};

// What the screen shows where the window is.
UniqueBitmap Capture(HWND window) {
  RECT frame{};
  GetWindowRect(window, &frame);
  const int width = frame.right - frame.left;
  const int height = frame.bottom - frame.top;
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  UniqueBitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!bitmap) throw std::runtime_error("There is no bitmap for the picture");
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HGDIOBJ previous = SelectObject(memory, bitmap.Get());
  const BOOL copied = BitBlt(memory, 0, 0, width, height, screen, frame.left, frame.top, SRCCOPY);
  SelectObject(memory, previous);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  if (!copied) throw std::runtime_error("The window cannot be copied from the screen");
  return bitmap;
}

}  // namespace

void Album::Take(HWND window, const std::string& fileName) {
  if (fileName.empty()) return;
  PaintNow(window);
  pictures_.emplace_back(fileName, Capture(window));
}

void Album::Save() const {
  const GdiplusSession session;
  for (const auto& [fileName, bitmap] : pictures_) {
    const std::unique_ptr<Gdiplus::Bitmap> picture(Gdiplus::Bitmap::FromHBITMAP(bitmap.Get(), nullptr));
    if (!picture || picture->Save(Widen(fileName).c_str(), &kPngEncoder, nullptr) != Gdiplus::Ok)
      throw std::runtime_error("The picture cannot be written: " + fileName);
  }
}

}  // namespace workbench
