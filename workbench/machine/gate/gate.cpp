#include "workbench/machine/gate/gate.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace workbench {
namespace {

// CloseHandle closes every kind of kernel object, so they share one account.
HandleKind Family(HandleKind kind) {
  switch (kind) {
    case HandleKind::DriverFile:
    case HandleKind::ComPortFile:
    case HandleKind::Mutex:
    case HandleKind::Event:
    case HandleKind::Process:
    case HandleKind::Thread:
      return HandleKind::File;
    default:
      return kind;
  }
}

bool IsGone(const OpenHandle& handle) {
  return handle.kind == HandleKind::Window && !IsWindow(reinterpret_cast<HWND>(handle.value));
}

bool CanFail(const FunctionRow& row) {
  return row.failure.outcome != Outcome::CannotFail;
}

// The function, and the return addresses inside the module of the calls that the thread is in, as one number
// (FNV-1a). Between them the system sends a window its messages on a hundred ways.
std::uint64_t PathOfCalls(const FunctionRow& row, HMODULE module) {
  void* addresses[62] = {};
  const USHORT count = CaptureStackBackTrace(0, ARRAYSIZE(addresses), addresses, nullptr);
  std::uint64_t path = 14695981039346656037u ^ reinterpret_cast<std::uint64_t>(&row);
  for (USHORT i = 0; i < count; ++i) {
    void* base = nullptr;
    if (RtlPcToFileHeader(addresses[i], &base) != module) continue;
    path = (path ^ reinterpret_cast<std::uint64_t>(addresses[i])) * 1099511628211u;
  }
  return path;
}

std::atomic<Gate*> current{nullptr};

}  // namespace

std::uint64_t Call::Number(std::size_t index) const {
  return index < arguments.size() ? arguments[index].value : 0;
}

std::wstring Call::Text(std::size_t index) const {
  return index < arguments.size() ? arguments[index].text : std::wstring();
}

Gate::Gate() : trace_(std::getenv("KD_WORKBENCH_TRACE") != nullptr) {
  Gate* none = nullptr;
  if (!current.compare_exchange_strong(none, this)) throw std::logic_error("a machine is there already");
}

Gate::~Gate() {
  current.store(nullptr);
}

Gate* Gate::Current() {
  return current.load();
}

CallTicket Gate::Enter(const FunctionRow& row, std::vector<CallArgument> arguments) {
  const std::scoped_lock guard(lock_);
  CallTicket ticket{.row = &row};
  if (row.allocates) {
    ticket.inject = CanFail(row) && DecideAllocation(row);
    return ticket;
  }
  if (!row.logged) return ticket;
  if (lookAt_) lookAt_(row.name);
  ticket.inject = Decide(row, ticket.error);
  ticket.number = nextNumber_++;
  Call call{.number = ticket.number, .dll = row.dll, .function = row.name, .arguments = std::move(arguments)};
  call.thread = GetCurrentThreadId();
  call.injected = ticket.inject;
  if (pathsIn_ != nullptr) call.path = PathOfCalls(row, pathsIn_);
  underWay_[call.thread].push_back(ticket.number);
  log_.push_back(std::move(call));
  return ticket;
}

bool Gate::Decide(const FunctionRow& row, std::optional<DWORD>& error) {
  if (!CanFail(row)) return false;
  ++faultable_;
  bool inject = false;
  for (ArmedFault& armed : faults_) {
    if (!armed.fault.function.empty() && armed.fault.function != row.name) continue;
    ++armed.seen;
    if (armed.seen < armed.fault.from || armed.seen - armed.fault.from >= armed.fault.count) continue;
    inject = true;
    error = armed.fault.error;
  }
  if (inject) ++injected_;
  return inject;
}

bool Gate::DecideAllocation(const FunctionRow& row) {
  ++allocations_;
  if (pathsIn_ != nullptr) allocationPaths_.push_back(PathOfCalls(row, pathsIn_));
  if (allocations_ < allocationFault_.from ||
      allocations_ - allocationFault_.from >= allocationFault_.count) {
    return false;
  }
  ++failedAllocations_;
  return true;
}

Call* Gate::CallUnderWay() {
  const auto calls = underWay_.find(GetCurrentThreadId());
  return calls == underWay_.end() ? nullptr : Find(calls->second.back());
}

Call* Gate::Find(std::uint64_t number) {
  if (log_.empty() || number < log_.front().number) return nullptr;
  const std::size_t index = static_cast<std::size_t>(number - log_.front().number);
  return index < log_.size() ? &log_[index] : nullptr;
}

void Gate::Leave(const CallTicket& ticket, std::uint64_t result, DWORD lastError, bool succeeded,
                 std::span<const std::uint64_t> arguments) {
  if (ticket.row->allocates) CountBlock(*ticket.row, result, arguments[0]);
  if (ticket.number == 0) return;
  const std::scoped_lock guard(lock_);
  // A real close that fails was given a handle that is not open; the account says so.
  const bool closes =
      ticket.row->handles.action == HandleUse::Action::ClosesArgument && !ticket.row->simulated;
  const auto calls = underWay_.find(GetCurrentThreadId());
  // Calls that an exception left are still on the stack; they end with the call around them.
  while (calls->second.back() > ticket.number) calls->second.pop_back();
  if (succeeded || closes) Account(*ticket.row, result, arguments);
  calls->second.pop_back();
  if (calls->second.empty()) underWay_.erase(calls);
  Call* call = Find(ticket.number);
  if (call == nullptr) return;
  call->result = result;
  call->lastError = lastError;
  call->succeeded = succeeded && !ticket.inject;
  call->returned = true;
  if (trace_) std::fprintf(stderr, "%s\n", ToLine(*call).c_str());
}

// `block` is the first argument, which is one only of free. A block that realloc moves stays one.
void Gate::CountBlock(const FunctionRow& row, std::uint64_t result, std::uint64_t block) {
  const std::scoped_lock guard(lock_);
  if (row.handles.action == HandleUse::Action::OpensReturned && result != 0) ++liveAllocations_;
  if (row.handles.action == HandleUse::Action::ClosesArgument && block != 0) --liveAllocations_;
}

void Gate::Account(const FunctionRow& row, std::uint64_t result, std::span<const std::uint64_t> arguments) {
  const HandleUse& use = row.handles;
  switch (use.action) {
    case HandleUse::Action::None:
      break;
    case HandleUse::Action::OpensReturned:
      Opened(use.kind, result);
      break;
    case HandleUse::Action::OpensArgument: {
      const auto* place = reinterpret_cast<const std::uint64_t*>(arguments[use.argument]);
      if (place != nullptr) Opened(use.kind, *place);
      break;
    }
    case HandleUse::Action::ClosesArgument:
      Closed(use.kind, arguments[use.argument], use.strict);
      break;
  }
}

void Gate::Note(std::wstring_view detail) {
  const std::scoped_lock guard(lock_);
  Call* call = CallUnderWay();
  if (call == nullptr) return;
  if (!call->detail.empty()) call->detail += L' ';
  call->detail += detail;
}

void Gate::Violate(std::string text) {
  const std::scoped_lock guard(lock_);
  const Call* call = CallUnderWay();
  if (call != nullptr) text = std::string(call->function) + ": " + text;
  if (trace_) std::fprintf(stderr, "VIOLATION %s\n", text.c_str());
  violations_.push_back(std::move(text));
}

void Gate::Opened(HandleKind kind, std::uint64_t value) {
  const std::scoped_lock guard(lock_);
  const Call* call = CallUnderWay();
  OpenHandle handle{.kind = kind, .value = value};
  if (call != nullptr) {
    handle.call = call->number;
    handle.function = call->function;
  }
  handles_.emplace(std::pair(Family(kind), value), handle);
}

void Gate::Closed(HandleKind kind, std::uint64_t value, bool strict) {
  const std::scoped_lock guard(lock_);
  const auto found = handles_.find(std::pair(Family(kind), value));
  if (found != handles_.end()) {
    handles_.erase(found);
  } else if (strict) {
    Violate("closes what is not open");
  }
}

std::vector<Call> Gate::CallsOf(std::string_view function) const {
  const std::scoped_lock guard(lock_);
  std::vector<Call> calls;
  std::ranges::copy_if(log_, std::back_inserter(calls),
                       [&](const Call& call) { return call.function == function; });
  return calls;
}

std::size_t Gate::CountOf(std::string_view function) const {
  const std::scoped_lock guard(lock_);
  return static_cast<std::size_t>(std::ranges::count(log_, function, &Call::function));
}

std::vector<std::string> Gate::OrderOf(std::initializer_list<std::string_view> functions) const {
  const std::scoped_lock guard(lock_);
  std::vector<std::string> order;
  for (const Call& call : log_) {
    if (std::ranges::find(functions, std::string_view(call.function)) != functions.end()) {
      order.emplace_back(call.function);
    }
  }
  return order;
}

std::string Gate::LogText() const {
  std::string text;
  for (const Call& call : Log()) text += ToLine(call) + "\n";
  return text;
}

void Gate::ClearLog() {
  const std::scoped_lock guard(lock_);
  log_.clear();
  std::erase_if(handles_, [](const auto& entry) { return IsGone(entry.second); });
  faultable_ = injected_ = allocations_ = failedAllocations_ = 0;
  allocationFault_ = Fault{.count = 0};
}

void Gate::Inject(Fault fault) {
  const std::scoped_lock guard(lock_);
  faults_.push_back({std::move(fault), 0});
}

void Gate::AtEachCall(std::function<void(const char* function)> look) {
  const std::scoped_lock guard(lock_);
  lookAt_ = std::move(look);
}

void Gate::ClearFaults() {
  const std::scoped_lock guard(lock_);
  faults_.clear();
  allocationFault_ = Fault{.count = 0};
}

void Gate::FailAllocation(std::uint64_t kth, std::uint64_t count) {
  const std::scoped_lock guard(lock_);
  allocationFault_ = {.from = allocations_ + kth, .count = count};
}

std::vector<OpenHandle> Gate::OpenHandles() const {
  const std::scoped_lock guard(lock_);
  std::vector<OpenHandle> open;
  for (const auto& [key, handle] : handles_) {
    if (!IsGone(handle)) open.push_back(handle);
  }
  std::ranges::sort(open, {}, &OpenHandle::call);
  return open;
}

std::size_t Gate::OpenCount(HandleKind kind) const {
  return static_cast<std::size_t>(std::ranges::count(OpenHandles(), kind, &OpenHandle::kind));
}

std::vector<std::string> Gate::LeftOpen() const {
  constexpr HandleKind kKept[] = {HandleKind::Mutex, HandleKind::Process, HandleKind::Module};
  std::vector<std::string> left;
  for (const OpenHandle& handle : OpenHandles()) {
    if (std::ranges::find(kKept, handle.kind) != std::end(kKept)) continue;
    left.push_back(std::string("handle of ") + handle.function);
  }
  return left;
}

}  // namespace workbench
