// The DLL around the agent: attached by a thread that `workbench run` starts in the program, and reporting
// when the program ends.
#include <windows.h>

#include <cstdio>
#include <exception>
#include <string>

#include "workbench/agent/agent.h"

namespace {

workbench::Agent* agent = nullptr;
HINSTANCE instance = nullptr;

// Straight to the handle: when the process ends, the run time's streams may be gone.
void Write(DWORD stream, const std::string& text) {
  DWORD written = 0;
  WriteFile(GetStdHandle(stream), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

std::string Utf8(const std::wstring& text) {
  std::string bytes(text.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

std::wstring OwnFolder() {
  wchar_t path[MAX_PATH];
  const std::wstring file(path, GetModuleFileNameW(instance, path, MAX_PATH));
  return file.substr(0, file.rfind(L'\\') + 1);
}

}  // namespace

// Answers 1 when the host stands, else 0.
extern "C" __declspec(dllexport) DWORD WINAPI WorkbenchAttach(void*) {
  try {
    agent = new workbench::Agent(OwnFolder());
    return 1;
  } catch (const std::exception& error) {
    Write(STD_ERROR_HANDLE, "workbench: " + std::string(error.what()) + "\n");
    return 0;
  }
}

BOOL WINAPI DllMain(HINSTANCE self, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) instance = self;
  // The program has ended and no other thread is left. The agent is freed for its registry alone.
  if (reason == DLL_PROCESS_DETACH && agent != nullptr) {
    std::fflush(nullptr);  // what the program printed comes first; its run time is ours
    Write(STD_OUTPUT_HANDLE, Utf8(agent->Report()));
    delete agent;
  }
  return TRUE;
}
