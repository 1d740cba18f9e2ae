#include "workbench/agent/agent.h"

#include <string_view>

namespace workbench {
namespace {

// Of the program itself what is simulated, and what hands out or takes back handles, so that they add up.
AnyFunction ChooseForProgram(const char*, const char* name) {
  const FunctionRow* row = FindRow(name);
  const bool wanted = row != nullptr && (row->simulated || row->handles.action != HandleUse::Action::None);
  return wanted ? row->hook : nullptr;
}

std::wstring Wide(std::string_view text) {
  return std::wstring(text.begin(), text.end());
}

}  // namespace

Agent::Agent(const std::wstring& folder)
    : server_(AddDeviceServer(machine_, {.comNumbers = {5, 6, 7, 8},
                                         .driver = [this](unsigned index) { return &drivers_.at(index); }})),
      dll_(*new Dll(machine_, folder + L"KdUUI10.DLL")),
      program_(GetModuleHandleW(nullptr), ChooseForProgram) {
  for (PortDriver& driver : drivers_) {
    before_.push_back(driver.Current(kPortSet));
    before_.push_back(driver.Current(kBusSet));
  }
}

std::wstring Agent::Report() {
  return L"\nThe simulated host now:\n" + FormatPlaces(AllComPlaces(machine_)) + ChangedSettings() +
         MessageBoxes() + Faults();
}

std::wstring Agent::ChangedSettings() {
  std::wstring text;
  for (unsigned index = 0; index < kPorts; ++index) {
    for (const std::uint32_t set : {kPortSet, kBusSet}) {
      for (const std::string& change :
           Differences(before_.at(index * 2 + set), drivers_.at(index).Current(set))) {
        text += L"driver of " + server_.ports.at(index)->instanceId + L": " + Wide(change) + L"\n";
      }
    }
  }
  return text;
}

std::wstring Agent::MessageBoxes() {
  std::wstring text;
  for (const MessageBoxRecord& box : machine_.Screen().messageBoxes) {
    text += L"asked: " + box.text + L" - " + (box.answer == IDYES ? L"Yes" : L"No") + L"\n";
  }
  return text;
}

std::wstring Agent::Faults() {
  std::wstring text;
  for (const std::string& violation : machine_.Calls().Violations()) {
    text += L"wrong: " + Wide(violation) + L"\n";
  }
  for (const PortDriver& driver : drivers_) {
    for (const std::string& violation : driver.Violations()) text += L"wrong: " + Wide(violation) + L"\n";
  }
  for (const std::string& handle : machine_.Calls().LeftOpen()) text += L"left open: " + Wide(handle) + L"\n";
  return text;
}

}  // namespace workbench
