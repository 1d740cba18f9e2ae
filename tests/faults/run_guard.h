// Says which run it was when the process crashes or hangs in it.
#pragma once

#include <string>

namespace workbench {

// For the length of one run: a crash prints the label before the process ends, and a run that takes longer
// than twenty seconds ends the process with the label. One at a time.
class RunGuard {
 public:
  explicit RunGuard(std::string label);
  ~RunGuard();
  RunGuard(const RunGuard&) = delete;
  RunGuard& operator=(const RunGuard&) = delete;
};

}  // namespace workbench
