#include "tests/faults/run_guard.h"

#include <windows.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <mutex>

namespace workbench {
namespace {

constexpr ULONGLONG kLongestRun = 20000;  // ms; a run takes well under one second

std::mutex lock;
std::string currentLabel;
std::atomic<ULONGLONG> deadline{0};  // 0: no run

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

// The C run time ends the process without a word where the language's asks it to.
void OnAbort(int) {
  EndProcess("abort");
}

DWORD WINAPI Watch(void*) {
  for (;;) {
    Sleep(500);
    const ULONGLONG end = deadline.load();
    const std::scoped_lock guard(lock);
    if (end != 0 && GetTickCount64() > end && deadline.load() == end) EndProcess("hang");
  }
}

void StartOnce() {
  static const bool started = [] {
    SetUnhandledExceptionFilter(OnCrash);
    std::signal(SIGABRT, OnAbort);
    CloseHandle(CreateThread(nullptr, 0, Watch, nullptr, 0, nullptr));
    return true;
  }();
  static_cast<void>(started);
}

}  // namespace

RunGuard::RunGuard(std::string label) {
  StartOnce();
  const std::scoped_lock guard(lock);
  currentLabel = std::move(label);
  deadline = GetTickCount64() + kLongestRun;
}

RunGuard::~RunGuard() {
  deadline = 0;
}

}  // namespace workbench
