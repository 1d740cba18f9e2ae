// Where the language keeps, for each thread, the exceptions that are under way.
//
// The compiler has no thread-local storage of its own on this platform. Its library emulates it with a thread
// library that takes a slot of the process, an event and thread handles at the first throw, and gives none of
// them back when the module is unloaded. An installer loads and frees the module for every step: after a
// thousand loads with a throw in each the process has no slot left, and the library ends the host. This one
// takes a fiber slot, whose callback frees what a thread has when the thread ends, and gives it back.
#include "module/exception_state.h"

#include <windows.h>

#include <array>
#include <cstddef>

namespace {

// What the compiler passes, see emutls.c of its library: the variable's size and alignment, a place for the
// library's own use, and the initial value, null for zeros.
struct EmulatedVariable {
  std::size_t size;
  std::size_t alignment;
  // cppcheck-suppress unusedStructMember ; the layout is the compiler's
  void* reserved;
  void* initialValue;
};

struct State {
  alignas(16) std::array<unsigned char, 32> bytes;
};
// States of threads that were refused memory or the slot; a throw must not fail for want of either.
struct ReserveState {
  volatile LONG thread;  // id of its owner, 0 for none
  State state;
};

INIT_ONCE once = INIT_ONCE_STATIC_INIT;
volatile DWORD slot = FLS_OUT_OF_INDEXES;
std::array<ReserveState, 16> reserve;
void* volatile onlyVariable;

void WINAPI FreeState(void* state) {
  HeapFree(GetProcessHeap(), 0, state);
}

BOOL CALLBACK TakeSlot(INIT_ONCE*, void*, void**) {
  slot = FlsAlloc(&FreeState);
  return TRUE;
}

State* ReserveOf(LONG thread) noexcept {
  for (ReserveState& one : reserve) {
    if (one.thread == thread) return &one.state;
  }
  return nullptr;
}

State* TakeReserve(LONG thread) noexcept {
  for (ReserveState& one : reserve) {
    if (InterlockedCompareExchange(&one.thread, thread, 0) == 0) return &one.state;
  }
  __builtin_trap();  // sixteen threads at once, and no memory for any
}

State* StateOfThread() noexcept {
  InitOnceExecuteOnce(&once, &TakeSlot, nullptr, nullptr);
  const auto thread = static_cast<LONG>(GetCurrentThreadId());
  if (State* const reserved = ReserveOf(thread)) return reserved;
  if (slot == FLS_OUT_OF_INDEXES) return TakeReserve(thread);
  auto* state = static_cast<State*>(FlsGetValue(slot));
  if (state != nullptr) return state;
  state = static_cast<State*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(State)));
  if (state != nullptr && FlsSetValue(slot, state)) return state;
  if (state != nullptr) FreeState(state);
  return TakeReserve(thread);
}

}  // namespace

// The exceptions under way are the only variable of this kind: the module itself has none. One that came in
// with the library would share their place unseen.
//
// NOLINTNEXTLINE(bugprone-reserved-identifier): the compiler's name
extern "C" void* __emutls_get_address(EmulatedVariable* variable) {
  if (variable->size > sizeof(State) || variable->alignment > alignof(State) ||
      variable->initialValue != nullptr) {
    __builtin_trap();
  }
  void* const first = InterlockedCompareExchangePointer(&onlyVariable, variable, nullptr);
  if (first != nullptr && first != variable) __builtin_trap();
  const DWORD lastError = GetLastError();  // a throw does not change it
  State* const state = StateOfThread();
  SetLastError(lastError);
  return state;
}

void ReleaseExceptionState() noexcept {
  const DWORD taken = slot;
  slot = FLS_OUT_OF_INDEXES;
  if (taken != FLS_OUT_OF_INDEXES) FlsFree(taken);
}
