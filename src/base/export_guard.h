// The boundary that no exception crosses. Portable.
#pragma once

#include <utility>

// Runs `body` and returns its result, or `onFailure` when any exception escapes it, which is usually memory
// running out. What was thrown is not reported. It stands around every export, window procedure and callback:
// the caller is another program's code, and an exception of this module must not reach it.
template <class Result, class Body>
[[nodiscard]] Result GuardBoundary(Result onFailure, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return onFailure;
  }
}
