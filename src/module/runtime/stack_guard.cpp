// The stack protector's part of the run time. The compiler's own library loads the cryptographic provider's
// DLLs for its value at each load of the module (docs/architecture.md). This one is made of the time, the
// performance counter, the process and the addresses of the module and the stack, as the platform's own
// compiler does it.
#include <windows.h>

#include <cstdint>

// The names are the compiler's.
// NOLINTBEGIN(bugprone-reserved-identifier,cppcoreguidelines-avoid-non-const-global-variables)
extern "C" {
std::uintptr_t __stack_chk_guard = 0;
[[noreturn]] void __stack_chk_fail();
}
// NOLINTEND(bugprone-reserved-identifier,cppcoreguidelines-avoid-non-const-global-variables)

namespace {

// Every bit of the value changes about half the bits of the result.
std::uint64_t MixBits(std::uint64_t value) noexcept {
  value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9;
  value = (value ^ value >> 27) * 0x94D049BB133111EB;
  return value ^ value >> 31;
}

// Runs before every other constructor, itself unprotected: the value changes under it.
[[gnu::constructor(101), gnu::no_stack_protector]] void MakeGuard() noexcept {
  FILETIME now;
  LARGE_INTEGER counter;
  GetSystemTimeAsFileTime(&now);
  QueryPerformanceCounter(&counter);
  const std::uint64_t parts[] = {std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime,
                                 static_cast<std::uint64_t>(counter.QuadPart),
                                 GetTickCount64(),
                                 std::uint64_t{GetCurrentProcessId()} << 32 | GetCurrentThreadId(),
                                 reinterpret_cast<std::uintptr_t>(&now),
                                 reinterpret_cast<std::uintptr_t>(&__stack_chk_guard)};
  std::uint64_t value = 0;
  for (const std::uint64_t part : parts) value = MixBits(value + part);
  // Its lowest byte is 0, so that text that runs over cannot repeat it.
  __stack_chk_guard = static_cast<std::uintptr_t>(value) & ~std::uintptr_t{0xFF};
}

}  // namespace

// Nothing of the process can be trusted any more, not even its exception handlers: the kernel ends it.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the compiler's name
void __stack_chk_fail() {
  constexpr unsigned kStackCookieCheckFailure = 2;  // FAST_FAIL_STACK_COOKIE_CHECK_FAILURE
  asm volatile("int $0x29" : : "c"(kStackCookieCheckFailure));
  __builtin_unreachable();
}
