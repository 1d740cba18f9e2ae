#include "tests/faults/fault_run.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

#include "tests/faults/port_settings.h"
#include "tests/faults/run_guard.h"

namespace workbench {
namespace {

// The sets of the first port's drivers.
std::vector<ParameterValues> SetsOf(ScenarioRig& rig) {
  if (rig.drivers.empty()) return {ParameterValues(kPortSet), ParameterValues(kBusSet)};
  return {rig.PortSet(), rig.BusSet()};
}

// The classes of the thread's top-level windows, without those that Windows itself keeps for each thread.
std::multiset<std::string> TopLevelWindows() {
  std::multiset<std::string> classes;
  const auto collect = [](HWND window, LPARAM to) -> BOOL {
    char name[64] = {};
    GetClassNameA(window, name, ARRAYSIZE(name));
    if (std::string_view(name) != "IME") reinterpret_cast<std::multiset<std::string>*>(to)->insert(name);
    return TRUE;
  };
  EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&classes));
  return classes;
}

// A port may share its name with another device after a question that was answered "No": only one of the two
// can have the DOS device then.
void InspectNames(ScenarioRig& rig, RunResult& outcome) {
  std::map<std::wstring, int> uses;
  for (const Device* device : rig.machine.Devices().All()) {
    if (device->port) ++uses[rig.NameOf(*device)];
  }
  for (const Device* device : rig.machine.Devices().All()) {
    if (!device->port || !device->started || uses[rig.NameOf(*device)] > 1) continue;
    if (rig.machine.DosNames().NamesOf(device->port->kernelDevice).size() != 1)
      outcome.findings.emplace_back("a port without its DOS device, or with two");
  }
}

// With the function that gives a kind of handle back missing from its DLL, nothing can be given back.
bool CannotBeClosed(const RunResult& outcome, std::string_view handle) {
  const bool isDatabase = handle.ends_with("ComDBOpen");
  const bool isInternet = handle.find("Internet") != handle.npos || handle.ends_with("HttpOpenRequestW");
  const std::wstring closer = isDatabase ? L"ComDBClose" : L"InternetCloseHandle";
  return (isDatabase || isInternet) && std::ranges::any_of(outcome.log, [&](const Call& call) {
           return call.injected && std::string_view(call.function) == "GetProcAddress" &&
                  call.Text(1) == closer;
         });
}

void InspectDrivers(ScenarioRig& rig, RunResult& outcome) {
  for (const PortDriver& driver : rig.drivers) {
    // A parameter that there was no memory for is missing from its set: the driver refuses what is written
    // then, and keeps what it has.
    for (const std::string& violation : driver.Violations()) {
      if (!outcome.outOfMemory || violation.find("the stream of") == std::string::npos)
        outcome.findings.push_back("driver: " + violation);
    }
    if (driver.OpenSessions() != 0) outcome.findings.emplace_back("a driver is left open");
  }
}

// What is there after the DLL is done and before it is unloaded.
void Inspect(ScenarioRig& rig, RunResult& outcome) {
  Gate& gate = rig.machine.Calls();
  outcome.calls = gate.FaultableCalls();
  outcome.allocations = gate.Allocations();
  outcome.paths = gate.AllocationPaths();
  outcome.injected = gate.InjectedFaults();
  outcome.log = gate.Log();
  outcome.outOfMemory = gate.FailedAllocations() != 0;
  outcome.after = SetsOf(rig);
  for (const Call& call : outcome.log) {
    if (call.injected && outcome.failedFunction.empty()) outcome.failedFunction = call.function;
  }
  for (const std::string& handle : gate.LeftOpen()) {
    if (!CannotBeClosed(outcome, handle)) outcome.findings.push_back(handle + " left open");
  }
  for (const std::string& violation : gate.Violations()) outcome.findings.push_back("misuse: " + violation);
  InspectDrivers(rig, outcome);
}

}  // namespace

RunResult RunOnce(const Scenario& scenario, Trouble trouble, const std::string& label,
                  const std::function<void(Gate& gate)>& arm) {
  const RunGuard guard(std::string(scenario.name) + ", " + label);
  RunResult outcome;
  ScenarioRig rig;
  scenario.build(rig);
  outcome.before = SetsOf(rig);
  rig.Load();
  Gate& gate = rig.machine.Calls();
  const std::multiset<std::string> windows = TopLevelWindows();
  const std::int64_t blocks = gate.LiveAllocations();
  if (scenario.start != nullptr) scenario.start(rig);
  gate.ClearLog();
  arm(gate);
  const bool results = scenario.run(rig, trouble);
  gate.ClearFaults();
  if (!results) outcome.findings.emplace_back("not a stated result");
  Inspect(rig, outcome);
  const std::int64_t left = gate.LiveAllocations() - blocks;
  if (left != 0) outcome.findings.push_back("blocks not freed: " + std::to_string(left));
  // A function that fails for good may leave a port nameless.
  if (!scenario.takesNamesAway && outcome.injected <= 1) InspectNames(rig, outcome);
  if (TopLevelWindows() != windows)
    outcome.findings.push_back("windows left: " + testing::PrintToString(TopLevelWindows()));
  rig.dll.reset();
  outcome.kept = !scenario.hasSettings || std::ranges::all_of(rig.server.ports, [&](const Device* port) {
    return KeepsSettings(rig.machine, *port);
  });
  return outcome;
}

bool OldOrNew(const RunResult& outcome, const RunResult& undisturbed) {
  for (const std::uint32_t selector : {kPortSet, kBusSet}) {
    const ParameterValues& is = outcome.after[selector];
    const std::vector<std::string> changed = Differences(outcome.before[selector], is);
    const std::vector<std::string> wrong = Differences(undisturbed.after[selector], is);
    const auto nameOf = [](const std::string& difference) {
      return difference.substr(0, difference.find(' '));
    };
    for (const std::string& one : wrong) {
      if (std::ranges::find(changed, nameOf(one), nameOf) != changed.end()) return false;
    }
  }
  return true;
}

}  // namespace workbench
