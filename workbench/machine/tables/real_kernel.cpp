// Real functions of kernel32 and the C runtime's memory: logged, counted and failed on request.
#include <malloc.h>

#include <cstdlib>

#include "workbench/machine/tables/tables.h"

namespace workbench {
namespace {

constexpr Failure kNoMemory = FailsWithZero(ERROR_NOT_ENOUGH_MEMORY);

const FunctionRow kRows[] = {
    {"kernel32.dll", KD_REAL(CreateMutexW), FailsWithZero(ERROR_ACCESS_DENIED), Returns(HandleKind::Mutex)},
    {.dll = "kernel32.dll",
     .name = "ReleaseMutex",
     .hook = reinterpret_cast<AnyFunction>(&RealThunk<"ReleaseMutex", decltype(::ReleaseMutex)>::Call),
     .failure = FailsWithZero(ERROR_NOT_OWNER),
     .runsAnyway = true},
    {"kernel32.dll", KD_REAL(WaitForSingleObject), FailsWithMinusOne(ERROR_INVALID_HANDLE)},
    {"kernel32.dll", KD_REAL(CreateEventA), FailsWithZero(ERROR_ACCESS_DENIED), Returns(HandleKind::Event)},
    {"kernel32.dll", KD_REAL(GetSystemDirectoryW), FailsWithZero(ERROR_ACCESS_DENIED)},
    {"kernel32.dll", KD_REAL(GetModuleFileNameW), FailsWithZero(ERROR_INVALID_HANDLE)},
    {"kernel32.dll", KD_REAL(ExpandEnvironmentStringsA), FailsWithZero(ERROR_NOT_ENOUGH_MEMORY)},
    {"kernel32.dll", KD_REAL(LocalAlloc), kNoMemory, Returns(HandleKind::LocalMemory)},
    {"kernel32.dll", KD_REAL(LocalFree), CannotFail(), ClosesIfKnown(HandleKind::LocalMemory)},
    {"kernel32.dll", KD_REAL(CreateActCtxW), FailsWithMinusOne(ERROR_RESOURCE_NAME_NOT_FOUND),
     Returns(HandleKind::ActivationContext)},
    {"kernel32.dll", KD_REAL(ReleaseActCtx), CannotFail(), Closes(HandleKind::ActivationContext)},
    {"kernel32.dll", KD_REAL(ActivateActCtx), FailsWithZero(ERROR_INVALID_PARAMETER)},
    {"kernel32.dll", KD_REAL(DeactivateActCtx), CannotFail()},
    {"kernel32.dll", KD_REAL(SetThreadLocale), FailsWithZero(ERROR_INVALID_PARAMETER)},
    {.dll = "msvcrt.dll",
     .name = "malloc",
     .hook = reinterpret_cast<AnyFunction>(&RealThunk<"malloc", void*(std::size_t)>::Call),
     .failure = kNoMemory,
     .handles = Returns(HandleKind::Heap),
     .logged = false,
     .allocates = true},
    {.dll = "msvcrt.dll",
     .name = "calloc",
     .hook = reinterpret_cast<AnyFunction>(&RealThunk<"calloc", void*(std::size_t, std::size_t)>::Call),
     .failure = kNoMemory,
     .handles = Returns(HandleKind::Heap),
     .logged = false,
     .allocates = true},
    {.dll = "msvcrt.dll",
     .name = "free",
     .hook = reinterpret_cast<AnyFunction>(&RealThunk<"free", void(void*)>::Call),
     .handles = Closes(HandleKind::Heap),
     .logged = false,
     .allocates = true},
    {.dll = "msvcrt.dll",
     .name = "realloc",
     .hook = reinterpret_cast<AnyFunction>(&RealThunk<"realloc", void*(void*, std::size_t)>::Call),
     .failure = kNoMemory,
     .logged = false,
     .allocates = true},
};

}  // namespace

std::span<const FunctionRow> KernelRows() {
  return kRows;
}

}  // namespace workbench
