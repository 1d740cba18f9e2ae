#include "workbench/agent/agent.h"

namespace workbench {
namespace {

// Of the program itself what is simulated, and what hands out or takes back handles, so that they add up.
AnyFunction ChooseForProgram(const char*, const char* name) {
  const FunctionRow* row = FindRow(name);
  const bool wanted = row != nullptr && (row->simulated || row->handles.action != HandleUse::Action::None);
  return wanted ? row->hook : nullptr;
}

}  // namespace

Agent::Agent(const std::wstring& folder)
    : dll_(*new Dll(rig_.machine, folder + L"KdUUI10.DLL")),
      program_(GetModuleHandleW(nullptr), ChooseForProgram) {}

std::wstring Agent::Report() {
  return L"\nThe simulated host now:\n" + FormatPlaces(AllComPlaces(rig_.machine)) +
         FormatChanges(before_, ValuesOf(rig_)) + FormatMessageBoxes(rig_.Boxes()) + FormatFaults(rig_);
}

}  // namespace workbench
