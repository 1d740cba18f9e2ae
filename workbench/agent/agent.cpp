#include "workbench/agent/agent.h"

#include "workbench/agent/neglect.h"

namespace workbench {
namespace {

// Of the program itself what is simulated, and what hands out or takes back handles, so that they add up.
AnyFunction ChooseForProgram(const char*, const char* name) {
  const FunctionRow* row = FindRow(name);
  const bool wanted = row != nullptr && (row->simulated || row->handles.action != HandleUse::Action::None);
  return wanted ? row->hook : nullptr;
}

// Threads of the program's run time close handles that they got by calls that are not seen here.
std::wstring WithoutUnseenHandles(std::wstring faults) {
  constexpr std::wstring_view kUnseen = L"VIOLATION: CloseHandle: closes what is not open\n";
  for (std::size_t at = 0; (at = faults.find(kUnseen)) != std::wstring::npos;)
    faults.erase(at, kUnseen.size());
  return faults;
}

}  // namespace

Agent::Agent(const std::wstring& folder, bool neglected)
    : dll_(*new Dll(rig_.machine, folder + L"KdUUI10.DLL")),
      program_(GetModuleHandleW(nullptr), ChooseForProgram) {
  StartWeb();
  before_ = ValuesOf(rig_);
  if (neglected) NeglectHost(rig_.machine, rig_.server);
}

void Agent::StartWeb() {
  web_.Start();
  for (unsigned number = 1; number <= rig_.server.ports.size(); ++number) {
    web_.SetPort(number, {.baudRate = 9600 * number, .state = number % 2});
    PointAt(rig_.Driver(number - 1), web_, number);
    rig_.BusSet(number - 1).SetNumber("PortNumber", 4000 + number);
  }
}

std::wstring Agent::Report() {
  Gate& calls = rig_.machine.Calls();
  for (const OpenHandle& handle :
       calls.OpenHandles()) {  // the program's run time keeps some events to its end
    if (handle.kind == HandleKind::Event) calls.Closed(handle.kind, handle.value, false);
  }
  return L"\nThe simulated host now:\n" + FormatPlaces(AllComPlaces(rig_.machine)) +
         FormatChanges(before_, ValuesOf(rig_)) + FormatMessageBoxes(rig_.Boxes()) +
         WithoutUnseenHandles(FormatFaults(rig_));
}

}  // namespace workbench
