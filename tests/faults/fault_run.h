// One run of a scenario with a fault, and what is judged of it.
#pragma once

#include <functional>

#include "tests/faults/fault_scenarios.h"

namespace workbench {

// One run's account.
struct RunResult {
  std::uint64_t calls = 0;
  std::uint64_t allocations = 0;
  std::uint64_t injected = 0;
  std::vector<Call> log;
  std::vector<std::uint64_t> paths;  // of its allocations, where they were noted
  std::vector<std::string>
      findings;      // results, handles, windows, heap, names and misuse that are not as stated
  bool kept = true;  // every setting of the ports is in its key or in its backup
  std::vector<ParameterValues> before, after;  // what the first port's drivers had, and have
  std::string failedFunction;                  // the first function that was failed
  bool outOfMemory = false;                    // an allocation was failed
};

// Builds the scenario's computer, arms the gate, runs the scenario, and looks at what is left of it.
RunResult RunOnce(const Scenario& scenario, Trouble trouble, const std::string& label,
                  const std::function<void(Gate& gate)>& arm);

// Whether every parameter of the drivers is as it was, or as the run leaves it that nothing disturbed.
[[nodiscard]] bool OldOrNew(const RunResult& outcome, const RunResult& undisturbed);

}  // namespace workbench
