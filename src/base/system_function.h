// A function that is looked for once.
#pragma once

#include <atomic>

// Keeps what the first look-up found, null included, for the life of the process. Any thread may ask; two
// that ask first at the same time may both look, and find the same.
//
// Not a function-local static: the compiler's guard around one uses the thread library's objects, which take
// handles for every thread that passes and end the process when there is no memory for them.
template <class Function>
class CSystemFunction {
 public:
  constexpr CSystemFunction() noexcept = default;

  template <class Find>
  [[nodiscard]] Function Get(Find&& find) noexcept {
    if (!looked_.load(std::memory_order_acquire)) {
      function_.store(find(), std::memory_order_relaxed);
      looked_.store(true, std::memory_order_release);
    }
    return function_.load(std::memory_order_relaxed);
  }

 private:
  std::atomic<Function> function_{nullptr};
  std::atomic<bool> looked_{false};
};
