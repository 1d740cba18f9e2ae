// The function that a redirected import is pointed at: the gate around a real or a simulated function.
#pragma once

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "base/last_error.h"
#include "workbench/machine/gate/function_row.h"
#include "workbench/machine/gate/gate.h"

namespace workbench {

// An input text for the log: "#7" for a resource id or an ordinal, shortened when it is very long.
[[nodiscard]] std::wstring LoggedText(const wchar_t* text);
[[nodiscard]] std::wstring LoggedText(const char* text);

template <std::size_t N>
struct FunctionName {
  char text[N]{};
  // NOLINTNEXTLINE(google-explicit-constructor): written as a literal
  consteval FunctionName(const char (&name)[N]) { std::copy_n(name, N, text); }
};

template <class T>
std::uint64_t Bits(T value) {
  if constexpr (std::is_pointer_v<T>) {
    return reinterpret_cast<std::uint64_t>(value);
  } else if constexpr (std::is_class_v<T>) {
    return 0;  // a GUID: the log does without
  } else {
    return static_cast<std::uint64_t>(value);
  }
}

template <class R>
R FromBits(std::uint64_t bits) {
  if constexpr (std::is_pointer_v<R>) {
    return reinterpret_cast<R>(bits);
  } else {
    return static_cast<R>(bits);
  }
}

template <class R>
bool Succeeded(const Failure& failure, R result) {
  switch (failure.outcome) {
    case Outcome::CannotFail:
      return true;
    case Outcome::ZeroIsGood:
      return Bits(result) == 0;
    case Outcome::NonZeroIsGood:
      return Bits(result) != 0;
    case Outcome::NotMinusOne:
      return result != FromBits<R>(~std::uint64_t{0});
    case Outcome::Hresult:
      return static_cast<std::int32_t>(Bits(result)) >= 0;
    case Outcome::AboveThirtyTwo:
      return static_cast<std::int64_t>(Bits(result)) > 32;
  }
  return true;
}

template <class T>
CallArgument LogArgument(const FunctionRow& row, std::size_t index, T value) {
  CallArgument logged{.value = Bits(value), .text = {}};
  if constexpr (std::is_same_v<T, const wchar_t*> || std::is_same_v<T, const char*>) {
    logged.text = LoggedText(value);
  } else if constexpr (std::is_same_v<T, wchar_t*>) {
    if ((row.inputTexts >> index) & 1) logged.text = LoggedText(value);
  }
  return logged;
}

// What the function returns when it is failed on purpose.
template <class R>
R InjectedResult(const Failure& failure, const std::optional<DWORD>& error) {
  if (failure.outcome == Outcome::ZeroIsGood)
    return FromBits<R>(error.value_or(static_cast<DWORD>(failure.result)));
  if (failure.lastError != 0 || error) SetLastError(error.value_or(failure.lastError));
  return FromBits<R>(failure.result);
}

// One call through the gate. The last error that the function left is what the caller finds.
template <class R, class... A>
R RunGated(const FunctionRow& row, R (*target)(A...), A... a) {
  Gate* const gate = Gate::Current();
  if (gate == nullptr) return target(a...);
  const std::array<std::uint64_t, sizeof...(A)> bits{Bits(a)...};
  const auto enter = [&] {
    const CLastErrorKeeper keeper;
    std::vector<CallArgument> logged;
    if (row.logged) {
      std::size_t index = 0;
      logged.reserve(sizeof...(A));
      (logged.push_back(LogArgument(row, index++, a)), ...);
    }
    return gate->Enter(row, std::move(logged));
  };
  const CallTicket ticket = enter();
  const bool runs =
      !ticket.inject || row.runsAnyway || row.handles.action == HandleUse::Action::ClosesArgument;
  const auto leave = [&](std::uint64_t result, bool succeeded) {
    const CLastErrorKeeper keeper;
    gate->Leave(ticket, result, GetLastError(), succeeded, bits);
  };
  if constexpr (std::is_void_v<R>) {
    target(a...);
    leave(0, true);
  } else {
    R result = runs ? target(a...) : R{};
    const bool worked = runs && Succeeded(row.failure, result);
    if (ticket.inject) result = InjectedResult<R>(row.failure, ticket.error);
    leave(Bits(result), worked);
    return result;
  }
}

// What an import is pointed at whose work the real function does.
template <FunctionName Name, class Signature>
struct RealThunk;
template <FunctionName Name, class R, class... A>
struct RealThunk<Name, R(A...)> {
  static R WINAPI Call(A... a) {
    static const FunctionRow& row = *FindRow(Name.text);
    static const auto real = reinterpret_cast<R (*)(A...)>(
        reinterpret_cast<AnyFunction>(GetProcAddress(LoadLibraryA(row.dll), row.name)));
    return RunGated<R, A...>(row, real, a...);
  }
};

// What the import of a simulated function is pointed at. The signature is that of the real one, or this does
// not compile.
template <FunctionName Name, auto Simulated, class Signature>
struct SimulatedThunk;
template <FunctionName Name, auto Simulated, class R, class... A>
struct SimulatedThunk<Name, Simulated, R(A...)> {
  static_assert(std::is_same_v<decltype(Simulated), R (*)(A...)>, "not the signature of the real function");
  static R WINAPI Call(A... a) {
    static const FunctionRow& row = *FindRow(Name.text);
    return RunGated<R, A...>(row, Simulated, a...);
  }
};

// The members of a FunctionRow behind the DLL's name: the function's name, its hook, and whether that
// simulates.
// clang-format off
#define KD_REAL(function) \
  #function, reinterpret_cast<AnyFunction>(&RealThunk<#function, decltype(::function)>::Call), false
#define KD_SIMULATED(function, simulated) \
  #function, \
  reinterpret_cast<AnyFunction>(&SimulatedThunk<#function, &simulated, decltype(::function)>::Call), true
// clang-format on

}  // namespace workbench
