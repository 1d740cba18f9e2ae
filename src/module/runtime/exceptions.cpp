// Keeps the exceptions under way, and each thread's record of them, in the module's own data, where the
// compiler's library would allocate what it never gives back (docs/architecture.md). A thread that throws
// takes one of a few places and leaves it with its last exception: nothing is allocated, so nothing can fail
// or stay.
#include <windows.h>

#include <cxxabi.h>

#include <algorithm>
#include <array>
#include <cstddef>

// The layout that the language's ABI gives it.
struct __cxxabiv1::__cxa_eh_globals {
  void* caught;
  unsigned int uncaught;
};

namespace {

using Globals = __cxxabiv1::__cxa_eh_globals;

// The library keeps its own data, 160 bytes in GCC 12 to 14, right before the object, and expects them zero.
constexpr std::size_t kHeaderSize = 256;
constexpr std::size_t kObjectSize = 128;

struct Exception {
  alignas(16) std::array<unsigned char, kHeaderSize + kObjectSize> bytes;
  bool used;
};
// What a thread needs: one exception, and others that are thrown and caught while it is handled.
struct Place {
  volatile LONG thread;  // id of the owner, 0 for none
  Globals globals;
  std::array<Exception, 4> exceptions;
};

std::array<Place, 24> places;

// The place that the thread has or can take; null when all are taken.
Place* FindPlace() noexcept {
  const auto thread = static_cast<LONG>(GetCurrentThreadId());
  for (Place& place : places) {
    if (place.thread == thread) return &place;
  }
  for (Place& place : places) {
    if (InterlockedCompareExchange(&place.thread, thread, 0) == 0) return &place;
  }
  return nullptr;
}

// With more threads throwing at the same moment than there are places, the last ones wait for the first: a
// place is left when its exception has reached the export.
Place& PlaceOfThread() noexcept {
  Place* place = FindPlace();
  while (place == nullptr) {
    Sleep(1);
    place = FindPlace();
  }
  return *place;
}

void LeaveIfEmpty(Place& place) noexcept {
  if (place.globals.caught != nullptr || place.globals.uncaught != 0) return;
  if (std::ranges::any_of(place.exceptions, &Exception::used)) return;
  InterlockedExchange(&place.thread, 0);
}

}  // namespace

// The linker takes these instead of the library's. With its others it would take those as well and fail.
// NOLINTBEGIN(bugprone-reserved-identifier): the ABI's names
namespace __cxxabiv1 {
extern "C" {

void* __cxa_allocate_exception(std::size_t size) noexcept {
  Place& place = PlaceOfThread();
  const auto free = std::ranges::find(place.exceptions, false, &Exception::used);
  if (size > kObjectSize || free == place.exceptions.end()) __builtin_trap();
  free->bytes.fill(0);
  free->used = true;
  return free->bytes.data() + kHeaderSize;
}

// cppcheck-suppress [constParameter, constParameterPointer] ; the signature is the ABI's
void __cxa_free_exception(void* object) noexcept {
  for (Place& place : places) {
    for (Exception& exception : place.exceptions) {
      if (exception.bytes.data() + kHeaderSize != object) continue;
      exception.used = false;
      LeaveIfEmpty(place);
      return;
    }
  }
}

__cxa_eh_globals* __cxa_get_globals() noexcept {
  return &PlaceOfThread().globals;
}

__cxa_eh_globals* __cxa_get_globals_fast() noexcept {
  return __cxa_get_globals();
}
}
}  // namespace __cxxabiv1
// NOLINTEND(bugprone-reserved-identifier)
