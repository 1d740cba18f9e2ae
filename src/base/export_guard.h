// The boundary that no exception crosses.
#pragma once

#include <utility>

// Runs `body` and returns its result; any exception that escapes it (memory running out, above all) ends
// in `onFailure` instead. Around every export, window procedure and callback: the caller is another
// program's code, which knows nothing of our exceptions.
template <class Result, class Body>
[[nodiscard]] Result GuardBoundary(Result onFailure, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return onFailure;
  }
}
