// Reads of unknown length. Windows only.
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
// ERROR_INSUFFICIENT_BUFFER again with a zeroed buffer of the `required` bytes that it asked for.
// Returns whether it succeeded; `buffer` and `size` then hold what was read. What is read may grow between
// two calls; after a few rounds of that the read counts as failed, so that nothing hangs here.
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
