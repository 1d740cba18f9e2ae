// Pictures of windows.
#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "base/unique_handle.h"

namespace workbench {

// Pictures of windows, taken and saved apart, because the encoder is a COM class that the registry of a
// simulated machine does not have: take them while the machine lives, save them afterwards.
class Album {
 public:
  // Paints the window and takes it with everything in it, for this file; nothing when the name is empty. It
  // should be on the screen and uncovered. Throws std::runtime_error when there is no picture.
  void Take(HWND window, const std::string& fileName);
  // Writes a PNG each, 24 bits per pixel. Throws std::runtime_error when one cannot be written.
  void Save() const;

 private:
  using UniqueBitmap = CUniqueHandle<GdiHandleTraits<HBITMAP>>;
  std::vector<std::pair<std::string, UniqueBitmap>> pictures_;
};

}  // namespace workbench
