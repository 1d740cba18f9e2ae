// Pictures of windows.
#pragma once

#include <windows.h>

#include <string>

#include "base/unique_handle.h"

namespace workbench {

// What a window showed at one moment. Taken and saved apart, because the encoder is a COM class that the
// registry of a simulated machine does not have: take it while the machine lives, save it afterwards.
class Picture {
 public:
  // Takes the window with everything in it. It should be on the screen and uncovered. Throws
  // std::runtime_error when there is no picture.
  explicit Picture(HWND window);
  // Writes a PNG, 24 bits per pixel. Throws std::runtime_error when it cannot be written.
  void Save(const std::wstring& fileName) const;

 private:
  CUniqueHandle<GdiHandleTraits<HBITMAP>> bitmap_;
};

}  // namespace workbench
