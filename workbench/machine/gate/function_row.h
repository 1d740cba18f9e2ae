// The table row of one redirected function.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string_view>

#include "workbench/machine/gate/import_table.h"

namespace workbench {

// Kinds of things that the DLL is handed and has to give back.
enum class HandleKind : std::uint8_t {
  None,
  File,         // CreateFileW on a real file
  DriverFile,   // CreateFileW on a driver's interface
  ComPortFile,  // CreateFileW on \\.\COMn
  RegistryKey,
  DeviceSet,
  ComDatabase,
  Mutex,
  Event,
  Process,
  Thread,
  Internet,
  Gdi,
  Window,
  LocalMemory,
  Heap,  // counted, not listed: see Gate::LiveAllocations
  Module,
  ActivationContext,
};

// How a function says whether it succeeded.
enum class Outcome : std::uint8_t {
  CannotFail,     // nothing to inject
  ZeroIsGood,     // LSTATUS, CONFIGRET, ComDB*
  NonZeroIsGood,  // BOOL, pointers, handles that are null on failure, counts
  NotMinusOne,    // INVALID_HANDLE_VALUE and indexes
  Hresult,
  AboveThirtyTwo,  // ShellExecuteW
};

// The documented failure of a function: what it returns and the last error that it leaves (0: untouched).
struct Failure {
  Outcome outcome = Outcome::CannotFail;
  std::uint64_t result = 0;
  DWORD lastError = 0;
};
[[nodiscard]] constexpr Failure CannotFail() {
  return {};
}
[[nodiscard]] constexpr Failure FailsWithStatus(DWORD status) {
  return {Outcome::ZeroIsGood, status, 0};
}
[[nodiscard]] constexpr Failure FailsWithZero(DWORD lastError) {
  return {Outcome::NonZeroIsGood, 0, lastError};
}
[[nodiscard]] constexpr Failure FailsWithMinusOne(DWORD lastError) {
  return {Outcome::NotMinusOne, ~std::uint64_t{0}, lastError};
}
[[nodiscard]] constexpr Failure FailsWithHresult(std::uint32_t code) {
  return {Outcome::Hresult, code, 0};
}
[[nodiscard]] constexpr Failure FailsBelowThirtyThree(DWORD code) {
  return {Outcome::AboveThirtyTwo, code, 0};
}

// What a successful call does to a handle.
struct HandleUse {
  enum class Action : std::uint8_t { None, OpensReturned, OpensArgument, ClosesArgument };
  Action action = Action::None;
  HandleKind kind = HandleKind::None;
  std::uint8_t argument = 0;
  bool strict = true;  // closing what is not open is a violation
};
[[nodiscard]] constexpr HandleUse NoHandle() {
  return {};
}
[[nodiscard]] constexpr HandleUse Returns(HandleKind kind) {
  return {HandleUse::Action::OpensReturned, kind, 0, true};
}
[[nodiscard]] constexpr HandleUse GivesArgument(HandleKind kind, std::uint8_t argument) {
  return {HandleUse::Action::OpensArgument, kind, argument, true};
}
[[nodiscard]] constexpr HandleUse Closes(HandleKind kind, std::uint8_t argument = 0) {
  return {HandleUse::Action::ClosesArgument, kind, argument, true};
}
// For things that others may have made (a window of a control).
[[nodiscard]] constexpr HandleUse ClosesIfKnown(HandleKind kind, std::uint8_t argument = 0) {
  return {HandleUse::Action::ClosesArgument, kind, argument, false};
}

// One redirected function, and how the gate logs, fails and counts its calls.
struct FunctionRow {
  const char* dll = "";
  const char* name = "";  // "#15" for an export without a name
  AnyFunction hook = nullptr;
  bool simulated = false;  // false: the real function does the work
  Failure failure{};
  HandleUse handles{};
  std::uint32_t inputTexts = 0;  // bit n: argument n is an input text although its type is not const
  bool runsAnyway = false;       // an injected failure is reported after the work was done (ReleaseMutex)
  bool logged = true;            // false for what is called so often that the log would hold nothing else
  bool allocates = false;        // memory: counted and failed apart, see Gate::FailAllocation
};

// Simulated as a whole: a function of theirs that has no row would reach the real host.
inline constexpr const wchar_t* kSimulatedDlls[] = {L"setupapi.dll", L"cfgmgr32.dll", L"msports.dll",
                                                    L"newdev.dll"};

// Makes rows known for good; they have to last as long as the program. Throws std::logic_error for a name
// that has a row: names are unique over all DLLs.
void AddRows(std::span<const FunctionRow> rows);
// The row of a function, or null.
[[nodiscard]] const FunctionRow* FindRow(std::string_view name);

}  // namespace workbench
