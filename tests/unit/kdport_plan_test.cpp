#include <gtest/gtest.h>

#include "../kdport_machine.h"
#include "kdport/plan/check.h"
#include "kdport/plan/planner.h"
#include "kdport/run/runner.h"

using namespace KdPort;

namespace {

std::vector<Wish> WishNumbers(const std::vector<std::int32_t>& numbers) {
  std::vector<Wish> wishes;
  for (const std::int32_t number : numbers)
    wishes.push_back({.port = wishes.size(), .number = number, .values = {}});
  return wishes;
}

std::vector<std::int32_t> NumbersOf(const Host& host) {
  std::vector<std::int32_t> numbers;
  for (const Port& port : host.ports) numbers.push_back(port.Number());
  return numbers;
}

TEST(KdPortPlan, NumbersChangePlacesWithoutEverBeingHeldTwice) {
  std::vector<std::int32_t> rising;
  for (std::int32_t number = 1; number <= 254; ++number) rising.push_back(number);
  const std::vector<std::int32_t> falling(rising.rbegin(), rising.rend());
  const struct {
    std::vector<std::int32_t> have, want;
    std::size_t steps;
  } cases[] = {
      {{5}, {9}, 1},
      {{5, 6}, {6, 5}, 3},
      {{5, 6, 7}, {6, 7, 5}, 4},
      {{5, 6, 7}, {6, 7, 8}, 3},
      {{5, 6, 8, 9}, {6, 5, 9, 8}, 6},
      {rising, falling, 254 + 127},
      {{5, 6}, {5, 6}, 0},
  };
  for (const auto& row : cases) {
    CFakeHost machine(MakeHost(row.have));
    for (std::size_t i = 0; i < row.have.size(); ++i) {
      // Its predecessor, which is not present any more, holds nothing.
      Port& absent = machine.host.ports.emplace_back(Port(machine.host.ports[i]));
      absent.instanceId += "OLD";
      absent.present = false;
    }
    Host host = machine.host;
    const Plan plan = MakePlan(host, WishNumbers(row.want), false);
    ASSERT_TRUE(plan.obstacles.empty()) << Say(plan.obstacles.front().message);
    EXPECT_EQ(plan.steps.size(), row.steps);
    EXPECT_EQ(RunSteps(host, plan.steps, machine, {}).exit, ExitCode::Done);
    EXPECT_FALSE(machine.heldTwice);
    machine.host.ports.resize(row.have.size());
    EXPECT_EQ(NumbersOf(machine.host), row.want);
  }
}

// COM5 to COM7 are ports 1 to 3 of the product; 3 is absent, 2 is open; COM8 is a modem's, COM9 a ghost.
Host CrowdedHost() {
  Host host = MakeHost({5, 6, 7});
  host.ports[1].open = true;
  host.ports[2].present = false;
  host.foreign.push_back({"MODEM\\1", "Modem", "COM8", true, "\\Device\\Modem"});
  Claim(host, 8);
  Claim(host, 9);
  return host;
}

TEST(KdPortPlan, EachObstacleIsNamedWithItsOwner) {
  using Prepare = void (*)(Host&);
  const Prepare slow = [](Host& host) { host.ports[0].lowestBaud = 75, host.ports[0].highestBaud = 921600; };
  const Prepare nameless = [](Host& host) { host.ports[0].name = ""; };
  const Prepare closed = [](Host& host) { host.claimed.reset(); };
  const Prepare shared = [](Host& host) { host.ports[0].dosTarget = "\\Device\\Modem"; };
  const Prepare free = [](Host& host) { host.ports[1].open = false; };
  const Prepare full = [](Host& host) { host.ports[1].open = false, host.claimed->fill(1); };
  Wish fast{.port = 0, .number = {}, .values = {}}, unread = fast;
  fast.values[Field::Baud] = 1'000'000;
  unread.values[Field::Parity] = 1;
  const struct {
    std::vector<Wish> wishes;
    const char* says;  // the beginning
    Prepare change = [](Host&) {};
  } cases[] = {
      {{{0, 8, {}}}, "COM5 (KDSRV\\1&2/1) cannot become COM8: Modem (MODEM\\1) has it"},
      {{{0, 7, {}}},
       "COM5 (KDSRV\\1&2/1) cannot become COM7: it is claimed by nobody that is present; KDBUS"},
      {{{0, 9, {}}}, "COM5 (KDSRV\\1&2/1) cannot become COM9: it is claimed by nobody that is present"},
      {{{1, 10, {}}}, "a program has COM6 (KDSRV\\1&2/2) open"},
      {{{2, 10, {}}}, "COM7 (KDSRV\\1&2/3) is not present"},
      {{fast}, "COM5 (KDSRV\\1&2/1) cannot have 1000000 baud: it supports 75 to 921600", slow},
      {{unread}, "COM5 (KDSRV\\1&2/1): its driver does not report parity"},
      {{{0, 10, {}}}, "KDSRV\\1&2/1 has no COM name that it could give up", nameless},
      {{{0, 10, {}}}, "COM5 (KDSRV\\1&2/1) cannot become COM10: the COM name database", closed},
      {{{0, 10, {}}}, "COM5 (KDSRV\\1&2/1) shares its name with Modem (MODEM\\1), which would", shared},
      {{{0, 10, {}}, {1, 10, {}}}, "COM6 (KDSRV\\1&2/2) cannot become COM10: KDSRV\\1&2/1 is to", free},
      {{{0, 6, {}}, {1, 5, {}}}, "COM5 (KDSRV\\1&2/1) cannot become COM6: ports have to change", full},
  };
  for (const auto& row : cases) {
    Host host = CrowdedHost();
    row.change(host);
    const Plan plan = MakePlan(host, row.wishes, false);
    EXPECT_TRUE(plan.steps.empty()) << row.says;
    ASSERT_FALSE(plan.obstacles.empty()) << row.says;
    EXPECT_EQ(Say(plan.obstacles.front().message).find(row.says), 0u) << row.says;
  }
  EXPECT_EQ(MakePlan(CrowdedHost(), {{1, 10, {}}}, true).steps.size(), 1u) << "--force changes an open port";
}

TEST(KdPortPlan, WhoSharesANameKeepsItsPlacesWhenTheOtherLeaves) {
  CFakeHost machine(MakeHost({5, 5}));
  machine.host.ports[0].dosTarget = machine.host.ports[1].kernelDevice;
  Host host = machine.host;
  const Plan plan = MakePlan(host, {{0, 9, {}}}, false);
  std::vector<std::string> words;
  for (const Step& step : plan.steps) {
    words.push_back(std::to_string(step.port) + " " +
                    std::string(step.kind == StepKind::Mend ? WordOf(step.place) : WordOf(step.kind)));
  }
  EXPECT_EQ(words, (std::vector<std::string>{"0 dos-device", "0 rename", "1 database", "1 dos-device",
                                             "1 serial-map"}));
  EXPECT_EQ(RunSteps(host, plan.steps, machine, {}).exit, ExitCode::Done);
  EXPECT_TRUE(IsClaimed(machine.host, 5));
}

TEST(KdPortCheck, EachDisagreementIsFoundAndMended) {
  const struct {
    void (*damage)(Host&);
    const char* found;
    const char* mend;  // empty where a person decides
  } cases[] = {
      {[](Host&) {}, "", ""},
      {[](Host& host) { host.ports[0].friendlyName = "Port (COM9)"; }, "friendly-name-differs",
       "friendly-name"},
      {[](Host& host) { host.ports[0].friendlyName = "Till"; }, "", ""},
      {[](Host& host) { host.ports[0].dosTarget.reset(); }, "dos-device-missing", "dos-device"},
      {[](Host& host) { host.ports[0].dosTarget = "\\Device\\X"; }, "dos-device-elsewhere", "dos-device"},
      {[](Host& host) { host.ports[0].dosTarget = "\\Device\\Modem"; }, "dos-device-elsewhere", ""},
      {[](Host& host) { host.ports[0].mapName.reset(); }, "serial-map-missing", "serial-map"},
      {[](Host& host) { host.ports[0].mapName = "COM9"; }, "serial-map-differs", "serial-map"},
      {[](Host& host) { (*host.claimed)[4] = 0; }, "number-unclaimed", "database"},
      {[](Host& host) {
         host.ports[0].name = "LPT1";
         (*host.claimed)[4] = 0;
       },
       "name-missing", ""},
      {[](Host& host) {
         host.foreign[0].name = "COM5";
         (*host.claimed)[7] = 0;
       },
       "name-shared", ""},
      {[](Host& host) { Claim(host, 9); }, "ghost", "release"},
      {[](Host& host) { host.foreign[0].present = false; }, "ghost", ""},
      {[](Host& host) { host.ports[0].present = false; }, "ghost", "release"},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    CFakeHost machine(MakeHost({5}));
    machine.host.foreign.push_back({"MODEM\\1", "Modem", "COM8", true, "\\Device\\Modem"});
    Claim(machine.host, 8);
    cases[i].damage(machine.host);
    const std::size_t all[] = {0};
    const auto findings = CheckHost(machine.host, all, true);
    std::string found, mend;
    for (const Finding& finding : findings) {
      found += WordOf(finding.message.text);
      if (finding.mend) mend += finding.mend->place != Place::None ? WordOf(finding.mend->place) : "release";
    }
    EXPECT_EQ(found, cases[i].found) << i;
    EXPECT_EQ(mend, cases[i].mend) << i;
    Host host = machine.host;
    EXPECT_EQ(RunSteps(host, RepairSteps(findings, true), machine, {}).exit, ExitCode::Done);
    EXPECT_EQ(CheckHost(machine.host, all, true).empty(), mend != "" || found == "") << i;
    for (const Step& step : RepairSteps(findings, false)) EXPECT_NE(step.kind, StepKind::Release) << i;
  }
}

}  // namespace
