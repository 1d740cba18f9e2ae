// Real functions of kernel32 and the C runtime's memory: logged, counted and failed on request.
#include <malloc.h>

#include <cstdlib>

#include "workbench/machine/tables/tables.h"

namespace workbench {
namespace {

constexpr Failure kNoMemory = FailsWithZero(ERROR_NOT_ENOUGH_MEMORY);

template <FunctionName Name, class Signature>
FunctionRow Memory(const Failure& failure, const HandleUse& handles) {
  return {.dll = "msvcrt.dll",
          .name = Name.text,
          .hook = reinterpret_cast<AnyFunction>(&RealThunk<Name, Signature>::Call),
          .failure = failure,
          .handles = handles,
          .logged = false,
          .allocates = true};
}

const FunctionRow kRows[] = {
    {"kernel32.dll", KD_REAL(CreateMutexW), FailsWithZero(ERROR_ACCESS_DENIED), Returns(HandleKind::Mutex)},
    {"kernel32.dll", KD_REAL(ReleaseMutex), FailsWithZero(ERROR_NOT_OWNER), NoHandle(), 0, true},
    {"kernel32.dll", KD_REAL(WaitForSingleObject), FailsWithMinusOne(ERROR_INVALID_HANDLE)},
    {"kernel32.dll", KD_REAL(CreateThread), FailsWithZero(ERROR_NOT_ENOUGH_MEMORY),
     Returns(HandleKind::Thread)},
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
    Memory<"malloc", void*(std::size_t)>(kNoMemory, Returns(HandleKind::Heap)),
    Memory<"calloc", void*(std::size_t, std::size_t)>(kNoMemory, Returns(HandleKind::Heap)),
    Memory<"realloc", void*(void*, std::size_t)>(kNoMemory, NoHandle()),
    Memory<"free", void(void*)>(CannotFail(), Closes(HandleKind::Heap)),
};

}  // namespace

const std::span<const FunctionRow> kKernelRows = kRows;

}  // namespace workbench
