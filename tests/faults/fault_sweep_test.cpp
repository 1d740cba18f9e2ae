// Every scenario again with every platform call failed: the stated result, no crash, no hang, no handle
// left, no misuse, no setting lost.
#include <gmock/gmock.h>

#include <chrono>
#include <cstdio>
#include <set>

#include "tests/faults/fault_scenarios.h"
#include "tests/faults/run_guard.h"

namespace workbench {
namespace {

// What is left open on purpose: the installation's mutex and the uninstall program's process, whose handles
// the DLL keeps; DLLs that are loaded on first use.
constexpr HandleKind kLeftOpen[] = {HandleKind::Mutex, HandleKind::Process, HandleKind::Module};

// One run's account.
struct RunResult {
  std::uint64_t calls = 0;
  std::uint64_t allocations = 0;
  std::uint64_t injected = 0;
  std::vector<Call> log;
  std::vector<std::string> findings;
  bool kept = true;
  std::string failedFunction;  // the first function that was failed
  bool outOfMemory = false;    // an allocation was failed
};

// With the function that gives a kind of handle back missing from its DLL, nothing can be given back.
struct MissingCloser {
  std::wstring_view function;
  HandleKind kind;
};
constexpr MissingCloser kMissingClosers[] = {{L"ComDBClose", HandleKind::ComDatabase},
                                             {L"InternetCloseHandle", HandleKind::Internet}};

bool CannotBeClosed(const std::vector<Call>& log, HandleKind kind) {
  return std::ranges::any_of(kMissingClosers, [&](const MissingCloser& row) {
    return row.kind == kind && std::ranges::any_of(log, [&](const Call& call) {
             return call.injected && call.function == std::string_view("GetProcAddress") &&
                    call.Text(1) == row.function;
           });
  });
}

std::string Describe(const OpenHandle& handle) {
  return std::string(NameOf(handle.kind)) + " of " + handle.function + " left open";
}

// What is there after the DLL is done and before it is unloaded.
void Inspect(World& world, RunResult& outcome) {
  Gate& gate = world.machine.Calls();
  outcome.calls = gate.FaultableCalls();
  outcome.allocations = gate.Allocations();
  outcome.injected = gate.InjectedFaults();
  outcome.log = gate.Log();
  outcome.outOfMemory = gate.FailedAllocations() != 0;
  for (const Call& call : outcome.log) {
    if (call.injected && outcome.failedFunction.empty()) outcome.failedFunction = call.function;
  }
  for (const OpenHandle& handle : gate.OpenHandles()) {
    const bool onPurpose = std::ranges::find(kLeftOpen, handle.kind) != std::end(kLeftOpen);
    // The language's run time makes events and semaphores when it throws for the first time, and keeps them.
    if (handle.kind == HandleKind::Event && outcome.outOfMemory) continue;
    if (!onPurpose && !CannotBeClosed(outcome.log, handle.kind)) outcome.findings.push_back(Describe(handle));
  }
  for (const std::string& violation : gate.Violations()) outcome.findings.push_back("misuse: " + violation);
  for (const PortDriver& driver : world.drivers) {
    // A parameter that there was no memory for is missing from its set: the driver refuses what is written
    // then, and keeps what it has.
    const bool shortSets = outcome.outOfMemory;
    for (const std::string& violation : driver.Violations()) {
      if (!shortSets || violation.find("the stream of") == std::string::npos) {
        outcome.findings.push_back("driver: " + violation);
      }
    }
    if (driver.OpenSessions() != 0) outcome.findings.push_back("a driver is left open");
  }
}

template <class Arm>
RunResult RunOnce(const Scenario& scenario, bool undisturbed, const std::string& label, Arm&& arm) {
  const RunGuard guard(std::string(scenario.name) + ", " + label);
  RunResult outcome;
  World world;
  scenario.build(world);
  {
    Dll dll(world.machine);
    world.machine.Calls().ClearLog();
    arm(world.machine.Calls());
    const bool results = scenario.run(world, dll, undisturbed);
    world.machine.Calls().ClearFaults();
    if (!results) outcome.findings.push_back("not a stated result");
    Inspect(world, outcome);
  }
  outcome.kept = scenario.kept(world);
  return outcome;
}

class FaultSweep : public testing::TestWithParam<Scenario> {
 protected:
  const Scenario& scenario = GetParam();
  std::size_t runs = 0;
  std::set<std::string> givenUp;

  bool StepsGiveUp(const std::string& function) const {
    return (" " + std::string(scenario.givesUp) + " ").find(" " + function + " ") != std::string::npos;
  }

  void Judge(const RunResult& outcome, const std::string& label, bool mayGiveUp) {
    ++runs;
    for (const std::string& finding : outcome.findings) ADD_FAILURE() << label << ": " << finding;
    if (outcome.kept) return;
    if (mayGiveUp || StepsGiveUp(outcome.failedFunction)) {
      givenUp.insert(outcome.failedFunction.empty() ? "memory" : outcome.failedFunction);
    } else {
      ADD_FAILURE() << label << ": a setting is lost by a failure of " << outcome.failedFunction;
    }
  }
  RunResult Undisturbed() {
    return RunOnce(scenario, true, "undisturbed", [](Gate&) {});
  }
  void Report(const char* what, std::uint64_t places) const {
    std::string names;
    for (const std::string& name : givenUp) names += " " + name;
    std::printf("    %-34s %-22s %4llu places, %4llu runs%s%s\n", std::string(scenario.name).c_str(), what,
                static_cast<unsigned long long>(places), static_cast<unsigned long long>(runs),
                names.empty() ? "" : ", settings given up by the stated steps:", names.c_str());
  }
};

TEST_P(FaultSweep, WorksUndisturbed) {
  const RunResult outcome = Undisturbed();
  EXPECT_THAT(outcome.findings, testing::IsEmpty());
  EXPECT_TRUE(outcome.kept);
  EXPECT_GT(outcome.calls, 0u);
}

TEST_P(FaultSweep, EachCallOnce) {
  const std::uint64_t calls = Undisturbed().calls;
  for (std::uint64_t k = 1; k <= calls; ++k) {
    const std::string label = "call " + std::to_string(k);
    const RunResult outcome = RunOnce(scenario, false, label, [&](Gate& gate) { gate.Inject({.from = k}); });
    EXPECT_EQ(outcome.injected, 1u) << label;
    Judge(outcome, label + " " + outcome.failedFunction, false);
  }
  Report("each call once", calls);
}

TEST_P(FaultSweep, EachCallAndEveryLaterOfItsFunction) {
  const RunResult undisturbed = Undisturbed();
  std::map<std::string, std::uint64_t> calls;
  std::uint64_t places = 0;
  for (const Call& call : undisturbed.log) {
    const FunctionRow* row = FindRow(call.function);
    if (row->failure.outcome == Outcome::CannotFail) continue;
    const std::uint64_t from = ++calls[call.function];
    const std::string label = std::string(call.function) + " from its call " + std::to_string(from);
    const Fault fault{.function = call.function, .from = from, .count = Fault::kEveryLater};
    Judge(RunOnce(scenario, false, label, [&](Gate& gate) { gate.Inject(fault); }), label, false);
    ++places;
  }
  Report("and every later one", places);
}

TEST_P(FaultSweep, EachAllocation) {
  const std::uint64_t allocations = Undisturbed().allocations;
  for (std::uint64_t k = 1; k <= allocations; ++k) {
    const std::string label = "allocation " + std::to_string(k);
    Judge(RunOnce(scenario, false, label, [&](Gate& gate) { gate.FailAllocation(k); }), label, true);
  }
  Report("each allocation", allocations);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, FaultSweep, testing::ValuesIn(Scenarios().begin(), Scenarios().end()),
                         [](const auto& scenario) {
                           std::string name;
                           for (const char c : scenario.param.name) name += std::isalnum(c) != 0 ? c : '_';
                           return name;
                         });

}  // namespace
}  // namespace workbench
