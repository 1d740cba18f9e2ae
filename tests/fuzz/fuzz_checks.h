// What the fuzz targets share.
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the run as a finding when something does not hold that must, whatever the input says.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}
