// What this process holds, for tests that look for something that was not given back.
#pragma once

#include <cstddef>

struct Footprint {
  std::size_t kernelHandles = 0;
  std::size_t heapBytes = 0;  // of every heap

  // Counts. Other threads of the process should be at rest.
  [[nodiscard]] static Footprint Take();
};
