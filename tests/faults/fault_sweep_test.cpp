// Every scenario again with every platform call failed: the stated result, no crash, no hang, no handle or
// window left, no misuse, no setting lost.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>
#include <set>

#include "tests/faults/fault_scenarios.h"
#include "tests/faults/port_settings.h"
#include "tests/faults/run_guard.h"
#include "workbench/machine/gate/allocation_paths.h"

namespace workbench {
namespace {

// One run's account.
struct RunResult {
  std::uint64_t calls = 0;
  std::uint64_t allocations = 0;
  std::uint64_t injected = 0;
  std::vector<Call> log;
  std::vector<std::string> findings;
  bool kept = true;
  std::vector<ParameterValues> before, after;  // what the first port's drivers had, and have
  std::string failedFunction;                  // the first function that was failed
  bool outOfMemory = false;                    // an allocation was failed
};

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
void InspectNames(Machine& machine, RunResult& outcome) {
  const auto nameOf = [&](const Device& device) {
    return machine.Registry().Text(ParametersKeyOf(device.instanceId), L"PortName");
  };
  std::map<std::optional<std::wstring>, int> uses;
  for (const Device* device : machine.Devices().All()) {
    if (device->port) ++uses[nameOf(*device)];
  }
  for (const Device* device : machine.Devices().All()) {
    if (!device->port || !device->started || uses[nameOf(*device)] > 1) continue;
    if (machine.DosNames().NamesOf(device->port->kernelDevice).size() != 1) {
      outcome.findings.emplace_back("a port without its DOS device, or with two");
    }
  }
}

// With the function that gives a kind of handle back missing from its DLL, nothing can be given back.
bool CannotBeClosed(const RunResult& outcome, std::string_view handle) {
  const auto isMissing = [&](const wchar_t* closer) {
    return std::ranges::any_of(outcome.log, [&](const Call& call) {
      return call.injected && std::string_view(call.function) == "GetProcAddress" && call.Text(1) == closer;
    });
  };
  return (handle.starts_with(NameOf(HandleKind::ComDatabase)) && isMissing(L"ComDBClose")) ||
         (handle.starts_with(NameOf(HandleKind::Internet)) && isMissing(L"InternetCloseHandle"));
}

void InspectDrivers(ScenarioRig& rig, RunResult& outcome) {
  for (const PortDriver& driver : rig.drivers) {
    // A parameter that there was no memory for is missing from its set: the driver refuses what is written
    // then, and keeps what it has.
    const bool shortSets = outcome.outOfMemory;
    for (const std::string& violation : driver.Violations()) {
      if (!shortSets || violation.find("the stream of") == std::string::npos) {
        outcome.findings.push_back("driver: " + violation);
      }
    }
    if (driver.OpenSessions() != 0) outcome.findings.emplace_back("a driver is left open");
  }
}

// What is there after the DLL is done and before it is unloaded.
void Inspect(ScenarioRig& rig, RunResult& outcome) {
  Gate& gate = rig.machine.Calls();
  outcome.calls = gate.FaultableCalls();
  outcome.allocations = gate.Allocations();
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

template <class Arm>
RunResult RunOnce(const Scenario& scenario, Trouble trouble, const std::string& label, Arm&& arm) {
  const RunGuard guard(std::string(scenario.name) + ", " + label);
  RunResult outcome;
  ScenarioRig rig;
  scenario.build(rig);
  outcome.before = SetsOf(rig);
  {
    rig.Load();
    const std::multiset<std::string> windows = TopLevelWindows();
    const std::int64_t blocks = rig.machine.Calls().LiveAllocations();
    if (scenario.start != nullptr) scenario.start(rig);
    rig.machine.Calls().ClearLog();
    arm(rig.machine.Calls());
    const bool results = scenario.run(rig, trouble);
    rig.machine.Calls().ClearFaults();
    if (!results) outcome.findings.emplace_back("not a stated result");
    Inspect(rig, outcome);
    if (rig.machine.Calls().LiveAllocations() != blocks) {
      outcome.findings.push_back("blocks not freed: " +
                                 std::to_string(rig.machine.Calls().LiveAllocations() - blocks));
    }
    // A function that fails for good may leave a port nameless.
    if (!scenario.takesNamesAway && outcome.injected <= 1) InspectNames(rig.machine, outcome);
    if (TopLevelWindows() != windows)
      outcome.findings.push_back("windows left: " + testing::PrintToString(TopLevelWindows()));
    rig.dll.reset();
  }
  outcome.kept = !scenario.hasSettings || std::ranges::all_of(rig.server.ports, [&](const Device* port) {
    return KeepsSettings(rig.machine, *port);
  });
  return outcome;
}

// Whether every parameter of the drivers is as it was, or as the run leaves it that nothing disturbed.
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

// The run that nothing disturbs, and the path of calls of each of its allocations.
struct Undisturbed : RunResult {
  std::vector<std::uint64_t> paths;
};

const Undisturbed& RunUndisturbed(const Scenario& scenario) {
  static std::map<std::string_view, Undisturbed> runs;
  const auto [run, isNew] = runs.try_emplace(scenario.name);
  if (isNew) {
    std::optional<AllocationPaths> paths;
    const auto note = [&](Gate&) { paths.emplace(); };
    static_cast<RunResult&>(run->second) = RunOnce(scenario, Trouble::None, "undisturbed", note);
    run->second.paths = paths->Paths();
  }
  return run->second;
}

// The places of a scenario are dealt to so many tests, one after the other, so that shards take equally long.
constexpr unsigned kParts = 4;

class FaultSweep : public testing::TestWithParam<std::tuple<Scenario, unsigned>> {
 protected:
  static void TearDownTestSuite() {
    // In shards, each shard tells its own.
    std::printf("    fault sweep: %zu scenarios, %zu injected faults, %zu findings\n", scenarios.size(),
                faults, findings);
  }
  void SetUp() override {
    scenarios.insert(scenario.name);
    ASSERT_THAT(undisturbed_.findings, testing::IsEmpty());
    ASSERT_TRUE(undisturbed_.kept);
    ASSERT_GT(undisturbed_.calls, 0u);
  }

  // Whether a place, from 1, is one of this test's.
  bool IsOwn(std::uint64_t place) const { return place % kParts == std::get<1>(GetParam()); }
  bool StepsGiveUp(const std::string& function) const {
    return !function.empty() &&
           (" " + std::string(scenario.givesUp) + " ").find(" " + function + " ") != std::string::npos;
  }
  void Find(const std::string& finding) {
    ++findings;
    ADD_FAILURE() << finding;
  }
  // Runs the scenario with a fault and judges what came of it.
  template <class Arm>
  void Try(Trouble trouble, const std::string& place, Arm&& arm) {
    const RunResult outcome = RunOnce(scenario, trouble, place, arm);
    const std::string label = place + " " + outcome.failedFunction + ": ";
    ++runs_;
    if (outcome.injected != 0 || outcome.outOfMemory) {
      ++faults;
    } else if (scenario.hasWindows) {
      ++notReached_;
    } else {
      Find(label + "no fault came about");
    }
    for (const std::string& finding : outcome.findings) Find(label + finding);
    const bool driversKept = OldOrNew(outcome, undisturbed_);
    if (outcome.kept && driversKept) return;
    if (StepsGiveUp(outcome.failedFunction)) {
      givenUp_.insert(outcome.failedFunction);
    } else {
      Find(label +
           (driversKept ? "a setting is lost" : "a driver's setting is neither the old nor the new one"));
    }
  }
  void Report(const char* what, std::uint64_t places) const {
    std::string more = notReached_ == 0 ? "" : ", " + std::to_string(notReached_) + " not reached";
    for (const std::string& name : givenUp_) {
      more += (name == *givenUp_.begin() ? ", settings given up by the stated steps: " : " ") + name;
    }
    std::printf("    %-34s %-20s %4llu places, %4zu runs%s\n", std::string(scenario.name).c_str(), what,
                static_cast<unsigned long long>(places), runs_, more.c_str());
  }

  static inline std::set<std::string_view> scenarios;
  static inline std::size_t faults = 0;
  static inline std::size_t findings = 0;

  const Scenario& scenario = std::get<0>(GetParam());
  const Undisturbed& undisturbed_ = RunUndisturbed(scenario);

 private:
  std::size_t runs_ = 0;
  std::size_t notReached_ = 0;  // the calls were fewer this time
  std::set<std::string> givenUp_;
};

TEST_P(FaultSweep, EachCallOnce) {
  for (std::uint64_t k = 1; k <= undisturbed_.calls; ++k) {
    if (!IsOwn(k)) continue;
    Try(Trouble::Calls, "call " + std::to_string(k), [&](Gate& gate) { gate.Inject({.from = k}); });
  }
  Report("each call once", undisturbed_.calls);
}

TEST_P(FaultSweep, EachCallAndEveryLaterOfItsFunction) {
  std::map<std::string, std::uint64_t> calls;
  std::uint64_t place = 0;
  for (const Call& call : undisturbed_.log) {
    if (FindRow(call.function)->failure.outcome == Outcome::CannotFail) continue;
    const std::uint64_t from = ++calls[call.function];
    if (!IsOwn(++place)) continue;
    const Fault fault{.function = call.function, .from = from, .count = Fault::kEveryLater};
    Try(Trouble::Calls, "from call " + std::to_string(from) + " of " + call.function + " on,",
        [&](Gate& gate) { gate.Inject(fault); });
  }
  Report("and every later one", undisturbed_.calls);
}

// Parameters and list entries are made in loops, by the hundred: of the allocations on one path of calls the
// first and the last are failed.
TEST_P(FaultSweep, EachAllocation) {
  std::map<std::uint64_t, std::uint64_t> last;
  std::set<std::uint64_t> seen;
  for (std::uint64_t k = 1; k <= undisturbed_.allocations; ++k) last[undisturbed_.paths.at(k - 1)] = k;
  std::uint64_t place = 0;
  for (std::uint64_t k = 1; k <= undisturbed_.allocations; ++k) {
    const std::uint64_t path = undisturbed_.paths[k - 1];
    const bool isBetween = !seen.insert(path).second && last[path] != k;
    if (isBetween || !IsOwn(++place)) continue;
    Try(Trouble::Memory, "allocation " + std::to_string(k), [&](Gate& gate) { gate.FailAllocation(k); });
  }
  Report("allocations", undisturbed_.allocations);
}

// Memory that is not available again, from the first allocation on each path of calls on.
TEST_P(FaultSweep, EachAllocationAndEveryLater) {
  std::set<std::uint64_t> seen;
  std::uint64_t place = 0;
  for (std::uint64_t k = 1; k <= undisturbed_.allocations; ++k) {
    if (!seen.insert(undisturbed_.paths.at(k - 1)).second || !IsOwn(++place)) continue;
    Try(Trouble::Memory, "from allocation " + std::to_string(k) + " on,",
        [&](Gate& gate) { gate.FailAllocation(k, Fault::kEveryLater); });
  }
  Report("allocations from one on", undisturbed_.allocations);
}

bool IsNoNameCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) == 0;
}

// The part changes fastest, so that each of four shards gets one of every scenario.
INSTANTIATE_TEST_SUITE_P(Scenarios, FaultSweep,
                         testing::Combine(testing::ValuesIn(Scenarios()), testing::Range(0u, kParts)),
                         [](const auto& test) {
                           std::string name(std::get<0>(test.param).name);
                           std::ranges::replace_if(name, IsNoNameCharacter, '_');
                           return name + "_" + std::to_string(std::get<1>(test.param));
                         });

}  // namespace
}  // namespace workbench
