// workbench run: another program, unchanged, on a simulated computer.
#include <windows.h>

#include <psapi.h>

#include <stdexcept>
#include <vector>

#include "base/unique_handle.h"
#include "workbench/demo/commands.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

constexpr wchar_t kAgent[] = L"workbench_agent.dll";

[[noreturn]] void Fail(const char* what) {
  throw std::runtime_error(std::string(what) + " failed, error " + std::to_string(GetLastError()));
}

// One word of a command line, quoted as CommandLineToArgvW takes it apart again.
std::wstring Quoted(const std::wstring& word) {
  if (!word.empty() && word.find_first_of(L" \t\"") == std::wstring::npos) return word;
  std::wstring text = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t one : word) {
    if (one == L'"') text.append(backslashes + 1, L'\\');
    backslashes = one == L'\\' ? backslashes + 1 : 0;
    text += one;
  }
  return text.append(backslashes, L'\\') + L'"';
}

struct Started {
  CKernelHandle process;
  CKernelHandle thread;
};

// The program, stopped before its first instruction. It finds the DLL in this program's folder.
Started StartSuspended(const std::vector<std::string>& words) {
  std::wstring commandLine;
  for (const std::string& word : words) commandLine += Quoted(Widen(word)) + L' ';
  std::wstring path(32767, L'\0');
  path.resize(GetEnvironmentVariableW(L"PATH", path.data(), static_cast<DWORD>(path.size())));
  SetEnvironmentVariableW(L"PATH", (FolderOf(nullptr) + L";" + path).c_str());
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION made{};
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr,
                      &startup, &made)) {
    Fail("starting the program");
  }
  return {CKernelHandle(made.hProcess), CKernelHandle(made.hThread)};
}

// Calls a function with one argument inside the program and waits for its result.
DWORD CallInside(HANDLE process, const void* function, void* argument) {
  const auto start = reinterpret_cast<LPTHREAD_START_ROUTINE>(const_cast<void*>(function));
  const CKernelHandle thread(CreateRemoteThread(process, nullptr, 0, start, argument, 0, nullptr));
  DWORD result = 0;
  if (!thread || WaitForSingleObject(thread.Get(), INFINITE) != WAIT_OBJECT_0 ||
      !GetExitCodeThread(thread.Get(), &result)) {
    Fail("a call inside the program");
  }
  return result;
}

void LoadAgentInside(HANDLE process, const std::wstring& agent) {
  const SIZE_T size = (agent.size() + 1) * sizeof(wchar_t);
  void* const place = VirtualAllocEx(process, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
  if (place == nullptr || !WriteProcessMemory(process, place, agent.c_str(), size, nullptr)) {
    Fail("writing into the program");
  }
  // kernel32 is at the same address in every process.
  const auto load = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "LoadLibraryW");
  if (CallInside(process, reinterpret_cast<const void*>(load), place) == 0) Fail("loading the agent");
}

const char* FindAgentInside(HANDLE process) {
  HMODULE modules[256];
  DWORD size = 0;
  if (!EnumProcessModules(process, modules, sizeof modules, &size)) Fail("listing the program's modules");
  for (DWORD i = 0; i < size / sizeof(HMODULE) && i < 256; ++i) {
    wchar_t name[MAX_PATH] = L"";
    GetModuleBaseNameW(process, modules[i], name, MAX_PATH);
    if (_wcsicmp(name, kAgent) == 0) return reinterpret_cast<const char*>(modules[i]);
  }
  throw std::runtime_error("the agent is not in the program");
}

// The agent's start function is as far from the agent's beginning there as it is here.
void AttachAgent(HANDLE process, bool neglected) {
  const std::wstring agent = FolderOf(nullptr) + kAgent;
  LoadAgentInside(process, agent);
  const HMODULE here = LoadLibraryW(agent.c_str());
  if (here == nullptr) Fail("loading the agent");
  const auto attach = reinterpret_cast<const char*>(GetProcAddress(here, "WorkbenchAttach"));
  const auto offset = attach - reinterpret_cast<const char*>(here);
  const DWORD attached =
      CallInside(process, FindAgentInside(process) + offset, neglected ? process : nullptr);
  FreeLibrary(here);
  if (attached == 0) throw std::runtime_error("the simulated host does not stand");
}

}  // namespace

int RunProgram(const std::vector<std::string>& words, bool neglected) {
  if (words.empty()) throw std::runtime_error("run needs a program");
  const Started program = StartSuspended(words);
  try {
    AttachAgent(program.process.Get(), neglected);
  } catch (...) {
    TerminateProcess(program.process.Get(), 1);
    throw;
  }
  ResumeThread(program.thread.Get());
  DWORD status = 1;
  WaitForSingleObject(program.process.Get(), INFINITE);
  if (!GetExitCodeProcess(program.process.Get(), &status)) Fail("asking for the exit status");
  return static_cast<int>(status);
}

}  // namespace workbench
