#include "tests/faults/run_guard.h"

#include <windows.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace workbench {
namespace {

constexpr ULONGLONG kLongestRun = 20000;  // ms; a run takes well under one second

std::mutex lock;
std::string currentLabel;  // empty: no run
ULONGLONG deadline = 0;

[[noreturn]] void EndProcess(const char* what) {
  std::printf("FAULT SWEEP: %s in \"%s\"\n", what, currentLabel.c_str());
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), 3);
  std::abort();
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* exception) {
  std::printf("exception 0x%08lX at %p\n", exception->ExceptionRecord->ExceptionCode,
              exception->ExceptionRecord->ExceptionAddress);
  EndProcess("crash");
}

DWORD WINAPI Watch(void*) {
  for (;; Sleep(500)) {
    const std::scoped_lock guard(lock);
    if (!currentLabel.empty() && GetTickCount64() > deadline) EndProcess("hang");
  }
}

}  // namespace

RunGuard::RunGuard(std::string label) {
  static const HANDLE watcher = [] {
    SetUnhandledExceptionFilter(OnCrash);
    // The C run time ends the process without a word where the language's asks it to.
    std::signal(SIGABRT, [](int) { EndProcess("abort"); });
    return CreateThread(nullptr, 0, Watch, nullptr, 0, nullptr);
  }();
  static_cast<void>(watcher);
  const std::scoped_lock guard(lock);
  currentLabel = std::move(label);
  deadline = GetTickCount64() + kLongestRun;
}

RunGuard::~RunGuard() {
  const std::scoped_lock guard(lock);
  currentLabel.clear();
}

}  // namespace workbench
