// The DLL around the agent: attached by a thread that `workbench run` starts in the program, and reporting
// when the program ends.
#include <windows.h>

#include <cstdio>
#include <exception>
#include <string>

#include "workbench/agent/agent.h"
#include "workbench/text/device_text.h"

namespace {

workbench::Agent* agent = nullptr;
HINSTANCE instance = nullptr;

// Straight to the handle: when the process ends, the run time's streams may be gone.
void Write(DWORD stream, const std::string& text) {
  DWORD written = 0;
  WriteFile(GetStdHandle(stream), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace

// Answers 1 when the host stands, else 0. Anything but null wants the neglected one.
extern "C" __declspec(dllexport) DWORD WINAPI WorkbenchAttach(void* neglected) {
  try {
    agent = new workbench::Agent(workbench::FolderOf(instance), neglected != nullptr);
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
    Write(STD_OUTPUT_HANDLE, workbench::Narrow(agent->Report()));
    delete agent;
  }
  return TRUE;
}
