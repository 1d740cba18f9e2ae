// Reads of unknown length: calls of Windows that say how large a buffer they want. Windows only.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

// LocalAlloc: null when it fails.
struct LocalMemoryTraits {
  using Handle = HLOCAL;
  static Handle Invalid() noexcept { return nullptr; }
  static void Close(Handle handle) noexcept { LocalFree(handle); }
};
using CLocalMemory = CUniqueHandle<LocalMemoryTraits>;

// Calls read(buffer, size, required), first without a buffer, and each time that it fails with
// ERROR_INSUFFICIENT_BUFFER again with a zeroed buffer of the `required` bytes that it asked for. `read`
// returns bool and leaves its error as the thread's last one.
//
// Returns whether it succeeded. `buffer` then holds what was read, and is empty when the first call
// succeeded; `size` is its size in bytes, not that of the value. What is read may grow between two calls;
// after eight calls the read counts as failed, so that nothing hangs here. Memory that runs out is a failure
// too.
template <class Read>
[[nodiscard]] bool GrowAndRetry(CLocalMemory& buffer, DWORD& size, Read&& read) {
  constexpr int kMostCalls = 8;
  size = 0;
  for (int call = 0; call < kMostCalls; ++call) {
    DWORD required = 0;
    if (read(static_cast<BYTE*>(buffer.Get()), size, &required)) return true;
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return false;
    buffer.Reset(LocalAlloc(LMEM_ZEROINIT, required));
    if (!buffer) return false;
    size = required;
  }
  return false;
}
