// What this process holds, for tests that look for something that was not given back.
#pragma once

#include <cstddef>

struct Footprint {
  std::size_t kernelHandles = 0;
  std::size_t gdiObjects = 0;
  std::size_t userObjects = 0;  // windows and menus
  // Handed out by the C run time, which the DLL and the program have in common. Not what Windows' own DLLs
  // hold: Wine's version 6 controls lose 24 bytes for every font that they are given.
  std::size_t heapBytes = 0;
  std::size_t allHeapBytes = 0;  // of every heap

  // Counts. Other threads of the process should be at rest.
  [[nodiscard]] static Footprint Take();
};
