// The gate that every redirected call passes: it logs the call, may fail it, and counts its handles.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/machine/gate/function_row.h"

namespace workbench {

// One argument of a logged call: its bits, and its text when it is an input text ("" for a null pointer).
struct CallArgument {
  std::uint64_t value = 0;
  std::wstring text{};
};

// One call that the DLL made, in the order in which the calls began.
struct Call {
  std::uint64_t number = 0;  // position in the log, from 1
  const char* dll = "";
  const char* function = "";
  std::vector<CallArgument> arguments{};
  std::wstring detail{};  // what a structure argument held, for example "DIF_PROPERTYCHANGE DICS_DISABLE"
  std::uint64_t result = 0;
  DWORD lastError = 0;  // the thread's last error when the call returned
  DWORD thread = 0;
  bool returned = false;  // false while the call is under way, and for good when an exception left it
  bool succeeded = false;
  bool injected = false;   // failed by a Fault
  std::uint64_t path = 0;  // of calls that leads to it, where Gate::NotePaths asked for that

  // The n-th argument, from 0; an argument that the function does not have is 0 and "".
  [[nodiscard]] std::uint64_t Number(std::size_t index) const;
  [[nodiscard]] std::wstring Text(std::size_t index) const;
};

// A failure to inject. Calls are counted from 1, beginning with the call of Inject.
struct Fault {
  static constexpr std::uint64_t kEveryLater = ~std::uint64_t{0};

  std::string function{};        // empty: any function that can fail
  std::uint64_t from = 1;        // the first matching call that fails
  std::uint64_t count = 1;       // how many matching calls fail, or kEveryLater
  std::optional<DWORD> error{};  // instead of the documented error: the status, or the last error
};

// A handle that the DLL was given and has not given back.
struct OpenHandle {
  HandleKind kind = HandleKind::None;
  std::uint64_t value = 0;
  std::uint64_t call = 0;  // number of the call that handed it out
  const char* function = "";
};

// Where a call stands between its two halves.
struct CallTicket {
  std::uint64_t number = 0;  // 0: not logged
  const FunctionRow* row = nullptr;
  bool inject = false;
  std::optional<DWORD> error{};
};

// Sets the last error and answers what says failure: FALSE, unless the function has another value.
template <class Result = BOOL>
Result FailWith(DWORD error, Result failure = {}) {
  SetLastError(error);
  return failure;
}

// The log, the faults and the handles of one machine. Every operation may be called on any thread.
class Gate {
 public:
  // Throws std::logic_error when there is one already: calls find it through Current.
  Gate();
  ~Gate();
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  [[nodiscard]] static Gate* Current();  // null when there is none

  // -- for tests and stories
  [[nodiscard]] std::vector<Call> Log() const { return Locked(log_); }
  [[nodiscard]] std::vector<Call> CallsOf(std::string_view function) const;
  [[nodiscard]] std::size_t CountOf(std::string_view function) const;
  // Names of the calls to one of `functions`, in order: the way to assert an order.
  [[nodiscard]] std::vector<std::string> OrderOf(std::initializer_list<std::string_view> functions) const;
  // The log as text, one call per line.
  [[nodiscard]] std::string LogText() const;
  // Forgets the log; handles and violations stay.
  void ClearLog();

  // Faults add up. They hold until ClearFaults; their counting starts now.
  void Inject(Fault fault);
  void ClearFaults();
  // Runs `look` at the beginning of each logged call from now on, before the call does anything: what it sees
  // is what a process that ends there leaves.
  void AtEachCall(std::function<void(const char* function)> look);
  // Calls since construction or ClearLog that a Fault without a function would have counted, and how
  // many of them were failed.
  [[nodiscard]] std::uint64_t FaultableCalls() const { return Locked(faultable_); }
  [[nodiscard]] std::uint64_t InjectedFaults() const { return Locked(injected_); }
  // Memory allocations of the DLL since construction or ClearLog. FailAllocation fails the k-th from now
  // and those after it, `count` together (Fault::kEveryLater: for good).
  [[nodiscard]] std::uint64_t Allocations() const { return Locked(allocations_); }
  void FailAllocation(std::uint64_t kth, std::uint64_t count = 1);
  [[nodiscard]] std::uint64_t FailedAllocations() const { return Locked(failedAllocations_); }
  // From now on, notes for each call and each allocation the path of calls inside `module` that leads to it,
  // as one number: the same for the same path, as in a loop. On one thread.
  void NotePaths(HMODULE module) { pathsIn_ = module; }
  // What was noted of the allocations, in order; the calls have it in the log.
  [[nodiscard]] std::vector<std::uint64_t> AllocationPaths() const { return Locked(allocationPaths_); }
  // How many blocks the DLL has allocated and not freed since its imports were redirected; below zero when it
  // frees what it had before.
  [[nodiscard]] std::int64_t LiveAllocations() const { return Locked(liveAllocations_); }

  // What is open. Windows that were destroyed with their parent do not count.
  [[nodiscard]] std::vector<OpenHandle> OpenHandles() const;
  [[nodiscard]] std::size_t OpenCount(HandleKind kind) const;
  // "handle of RegOpenKeyExW" for each of them that the DLL does not keep on purpose: the mutex of the
  // installation, the process that it has started, and modules that were loaded when first needed.
  [[nodiscard]] std::vector<std::string> LeftOpen() const;

  // Misuse of an interface that Windows would forgive, punish later or crash on: wrong sizes, wrong
  // handles, a second close, use after destroy. Empty after a correct run.
  [[nodiscard]] std::vector<std::string> Violations() const { return Locked(violations_); }

  // -- for the redirected functions
  [[nodiscard]] CallTicket Enter(const FunctionRow& row, std::vector<CallArgument> arguments);
  void Leave(const CallTicket& ticket, std::uint64_t result, DWORD lastError, bool succeeded,
             std::span<const std::uint64_t> arguments);
  // Adds to the detail of the call that this thread is in.
  void Note(std::wstring_view detail);
  void Violate(std::string text);
  // Records misuse that Windows answers with a failure, and fails with it.
  template <class Result = BOOL>
  Result Misused(std::string what, DWORD error, Result failure = {}) {
    Violate(std::move(what));
    return FailWith(error, failure);
  }
  // Whether a structure that the caller gives says its right size; otherwise that is misuse.
  template <class Structure>
  [[nodiscard]] bool HasSize(const Structure& given, const char* what) {
    return given.cbSize == sizeof given ||
           Misused(std::string(what) + " of the wrong size " + std::to_string(given.cbSize),
                   ERROR_INVALID_USER_BUFFER);
  }
  void Opened(HandleKind kind, std::uint64_t value);
  // A handle of the kind that was not open is a violation when `strict`.
  void Closed(HandleKind kind, std::uint64_t value, bool strict);

 private:
  template <class T>
  [[nodiscard]] T Locked(const T& member) const {
    const std::scoped_lock guard(lock_);
    return member;
  }

  struct ArmedFault {
    Fault fault;
    std::uint64_t seen = 0;
  };
  [[nodiscard]] bool Decide(const FunctionRow& row, std::optional<DWORD>& error);
  [[nodiscard]] bool DecideAllocation(const FunctionRow& row);
  [[nodiscard]] Call* Find(std::uint64_t number);
  [[nodiscard]] Call* CallUnderWay();  // the innermost one of this thread; null when it is in none
  void Account(const FunctionRow& row, std::uint64_t result, std::span<const std::uint64_t> arguments);
  void CountBlock(const FunctionRow& row, std::uint64_t result, std::uint64_t block);

  mutable std::recursive_mutex lock_;
  std::vector<Call> log_;
  // By thread, the calls that it is in, innermost last: a window procedure of the DLL calls on while one of
  // its own calls is under way. Not thread_local: the compiler emulates that, and frees the memory of such a
  // variable before it calls its destructor.
  std::map<DWORD, std::vector<std::uint64_t>> underWay_;
  std::vector<ArmedFault> faults_;
  std::multimap<std::pair<HandleKind, std::uint64_t>, OpenHandle> handles_;
  std::vector<std::string> violations_;
  std::uint64_t nextNumber_ = 1;
  std::function<void(const char*)> lookAt_;
  std::uint64_t faultable_ = 0;
  std::uint64_t injected_ = 0;
  std::uint64_t allocations_ = 0;
  HMODULE pathsIn_ = nullptr;  // null: paths are not noted
  std::vector<std::uint64_t> allocationPaths_;
  Fault allocationFault_{.count = 0};  // counted from construction or ClearLog
  std::uint64_t failedAllocations_ = 0;
  std::int64_t liveAllocations_ = 0;
  bool trace_ = false;
};

// A call as one line of text.
[[nodiscard]] std::string ToLine(const Call& call);

}  // namespace workbench
