// The linker takes these definitions instead of the library's, which bring a demangler and formatted output
// with them (docs/architecture.md). The library reports a broken call by exceptions with a text; here each of
// them is bad_alloc, and ends as memory running out does: in the failure value of the export.
#include <cstdlib>
#include <new>

namespace __gnu_cxx {
// Nothing in the module reaches it: exceptions end at the exports. The library's prints the exception's name.
[[noreturn]] void __verbose_terminate_handler();
void __verbose_terminate_handler() {
  std::abort();
}
}  // namespace __gnu_cxx

namespace std {
[[noreturn]] void __throw_bad_alloc() {
  throw bad_alloc();
}
[[noreturn]] void __throw_bad_array_new_length() {
  throw bad_alloc();
}
[[noreturn]] void __throw_length_error(const char*) {
  throw bad_alloc();
}
[[noreturn]] void __throw_logic_error(const char*) {
  throw bad_alloc();
}
[[noreturn]] void __throw_out_of_range(const char*) {
  throw bad_alloc();
}
[[noreturn]] void __throw_out_of_range_fmt(const char*, ...) {
  throw bad_alloc();
}
}  // namespace std
