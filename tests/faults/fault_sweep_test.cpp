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

// The run that nothing disturbs, with the paths of its calls and allocations.
const RunResult& RunUndisturbed(const Scenario& scenario) {
  static std::map<std::string_view, RunResult> runs;
  const auto [run, isNew] = runs.try_emplace(scenario.name);
  const auto arm = [](Gate& gate) { gate.NotePaths(GetModuleHandleW(L"KdUUI10.DLL")); };
  if (isNew) run->second = RunOnce(scenario, Trouble::None, "undisturbed", arm);
  return run->second;
}

// The places of a scenario are dealt to so many tests, one after the other, so that shards take equally long.
constexpr unsigned kParts = 4;

using Paths = std::vector<std::uint64_t>;
using Places = std::vector<std::uint64_t>;

// The places, from 1, that are the first of their path, and those that are the first or the last.
Places First(const Paths& paths) {
  std::set<std::uint64_t> seen;
  Places places;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (seen.insert(paths[i]).second) places.push_back(i + 1);
  }
  return places;
}
Places FirstAndLast(const Paths& paths) {
  std::set<std::uint64_t> places;
  for (const std::uint64_t place : First(paths)) {
    const auto last = std::ranges::find(paths.rbegin(), paths.rend(), paths[place - 1]);
    places.insert({place, static_cast<std::uint64_t>(paths.rend() - last)});
  }
  return {places.begin(), places.end()};
}

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

  // Of places, this test's.
  static Places OwnPlaces(const Places& places) {
    Places own;
    for (std::size_t i = std::get<1>(GetParam()); i < places.size(); i += kParts) own.push_back(places[i]);
    return own;
  }
  std::vector<Call> FaultableCalls() const {
    std::vector<Call> calls = undisturbed_.log;
    std::erase_if(calls, [](const Call& call) {
      return FindRow(call.function)->failure.outcome == Outcome::CannotFail;
    });
    return calls;
  }
  static Paths PathsOf(const std::vector<Call>& calls) {
    Paths paths;
    for (const Call& call : calls) paths.push_back(call.path);
    return paths;
  }
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

// Values and list entries are read and made in loops, by the hundred: of what one path of calls leads to, the
// first and the last are failed; from which on everything fails, the first.
TEST_P(FaultSweep, EachCallOnce) {
  for (const std::uint64_t k : OwnPlaces(FirstAndLast(PathsOf(FaultableCalls())))) {
    Try(Trouble::Calls, "call " + std::to_string(k), [&](Gate& gate) { gate.Inject({.from = k}); });
  }
  Report("each call once", undisturbed_.calls);
}

TEST_P(FaultSweep, EachCallAndEveryLaterOfItsFunction) {
  const std::vector<Call> calls = FaultableCalls();
  for (const std::uint64_t k : OwnPlaces(First(PathsOf(calls)))) {
    const char* function = calls[k - 1].function;
    const auto from = static_cast<std::uint64_t>(std::ranges::count(
        calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(k), function, &Call::function));
    const Fault fault{.function = function, .from = from, .count = Fault::kEveryLater};
    Try(Trouble::Calls, "from call " + std::to_string(from) + " of " + function + " on,",
        [&](Gate& gate) { gate.Inject(fault); });
  }
  Report("and every later one", undisturbed_.calls);
}

TEST_P(FaultSweep, EachAllocation) {
  for (const std::uint64_t k : OwnPlaces(FirstAndLast(undisturbed_.paths))) {
    Try(Trouble::Memory, "allocation " + std::to_string(k), [&](Gate& gate) { gate.FailAllocation(k); });
  }
  Report("allocations", undisturbed_.allocations);
}

TEST_P(FaultSweep, EachAllocationAndEveryLater) {
  for (const std::uint64_t k : OwnPlaces(First(undisturbed_.paths))) {
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
