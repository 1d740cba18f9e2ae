// Every scenario again with every platform call failed: the stated result, no crash, no hang, no handle or
// window left, no misuse, no setting lost.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

#include "tests/faults/fault_run.h"

namespace workbench {
namespace {

// The run that nothing disturbs, with the path of calls of each of its allocations.
const RunResult& RunUndisturbed(const Scenario& scenario) {
  static std::map<std::string_view, RunResult> runs;
  const auto [run, isNew] = runs.try_emplace(scenario.name);
  const auto arm = [](Gate& gate) { gate.NoteAllocationPaths(); };
  if (isNew) run->second = RunOnce(scenario, Trouble::None, "undisturbed", arm);
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
  void Try(Trouble trouble, const std::string& place, const std::function<void(Gate& gate)>& arm) {
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
    if (!givenUp_.empty())
      more += ", settings given up by the stated steps: " + testing::PrintToString(givenUp_);
    std::printf("    %-34s %-20s %4llu places, %4zu runs%s\n", std::string(scenario.name).c_str(), what,
                static_cast<unsigned long long>(places), runs_, more.c_str());
  }

  static inline std::set<std::string_view> scenarios;
  static inline std::size_t faults = 0;
  static inline std::size_t findings = 0;

  const Scenario& scenario = std::get<0>(GetParam());
  const RunResult& undisturbed_ = RunUndisturbed(scenario);

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

// The part changes fastest, so that each of four shards gets one of every scenario.
INSTANTIATE_TEST_SUITE_P(Scenarios, FaultSweep,
                         testing::Combine(testing::ValuesIn(Scenarios()), testing::Range(0u, kParts)),
                         [](const auto& test) {
                           std::string name(std::get<0>(test.param).name);
                           const auto isOther = [](char c) { return std::isalnum(c) == 0; };
                           std::ranges::replace_if(name, isOther, '_');
                           return name + "_" + std::to_string(std::get<1>(test.param));
                         });

}  // namespace
}  // namespace workbench
