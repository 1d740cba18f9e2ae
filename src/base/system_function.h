// A function that is looked for once. Portable.
#pragma once

#include <atomic>

// Keeps what the first look-up found, null included, for as long as the module is loaded. To be declared
// `static constinit`. Any thread may call Get; two threads that call it first at the same time may both look,
// and find the same.
//
// A function-local static that is initialised at run time would not do: the compiler's guard around it uses
// the thread library's objects, which take handles for every thread that passes and end the process when
// there is no memory for them.
template <class Function>
class CSystemFunction {
 public:
  constexpr CSystemFunction() noexcept = default;

  // The function, or null when it does not exist. `find` is called without arguments and returns a Function.
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
