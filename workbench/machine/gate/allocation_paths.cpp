#include "workbench/machine/gate/allocation_paths.h"

#include <windows.h>

namespace workbench {
namespace {

AllocationPaths* wanted = nullptr;

// The return addresses of the calls that the thread is in, as one number (FNV-1a).
std::uint64_t PathOfCalls() {
  void* addresses[48] = {};
  const USHORT count = CaptureStackBackTrace(0, ARRAYSIZE(addresses), addresses, nullptr);
  std::uint64_t path = 14695981039346656037u;
  for (USHORT i = 0; i < count; ++i) {
    path = (path ^ reinterpret_cast<std::uint64_t>(addresses[i])) * 1099511628211u;
  }
  return path;
}

}  // namespace

AllocationPaths::AllocationPaths() {
  wanted = this;
}

AllocationPaths::~AllocationPaths() {
  wanted = nullptr;
}

void NoteAllocationPath() {
  if (wanted != nullptr) wanted->paths_.push_back(PathOfCalls());
}

}  // namespace workbench
