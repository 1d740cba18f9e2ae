// Which of the DLL's allocations are made on the same path of calls, as in a loop.
#pragma once

#include <cstdint>
#include <vector>

namespace workbench {

// Notes the path of every allocation while it lives. One at a time; on one thread.
class AllocationPaths {
 public:
  AllocationPaths();
  ~AllocationPaths();
  AllocationPaths(const AllocationPaths&) = delete;
  AllocationPaths& operator=(const AllocationPaths&) = delete;

  // One number for each allocation so far, in order: the same for the same path.
  [[nodiscard]] const std::vector<std::uint64_t>& Paths() const { return paths_; }

 private:
  friend void NoteAllocationPath();
  std::vector<std::uint64_t> paths_;
};

// For the gate: an allocation is under way. Nothing happens unless somebody wants to know.
void NoteAllocationPath();

}  // namespace workbench
