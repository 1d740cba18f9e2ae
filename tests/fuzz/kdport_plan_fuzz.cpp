// Random hosts and wishes for kdport's planner, carried out with one operation that fails or one
// interruption: no number is held twice at any step, and all is reached or refused before the first.
//
// Input: six bytes of choices (the force option, which operation fails, where the run is interrupted, from
// which number on all are claimed, how many foreign devices and how many ghosts), a byte each for their
// numbers, then three bytes for each port: its number, its wish and its state.
#include <span>

#include "../kdport_machine.h"
#include "fuzz_checks.h"
#include "kdport/files/host_file.h"
#include "kdport/plan/planner.h"
#include "kdport/run/runner.h"

namespace {

using namespace KdPort;

class CBytes {
 public:
  CBytes(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}
  bool IsEmpty() const { return rest_.empty(); }
  std::uint8_t Next() {
    if (rest_.empty()) return 0;
    const std::uint8_t byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte;
  }

 private:
  std::span<const std::uint8_t> rest_;
};

struct Case {
  Host host = MakeHost({});
  std::vector<Wish> wishes;
  bool force = false;
  std::size_t failing = 0;
  std::size_t interruptedAt = 0;
};

void AddPort(CBytes& bytes, Case& made) {
  const std::size_t place = made.host.ports.size();
  const std::uint8_t number = bytes.Next(), wanted = bytes.Next(), state = bytes.Next();
  Port port = MakePort(static_cast<std::uint32_t>(place + 1), number != 0 ? ComName(number) : "");
  port.present = (state & 1) == 0;
  port.open = (state & 2) != 0;
  if ((state & 4) != 0) port.dosTarget.reset();
  made.host.ports.push_back(port);
  if ((state & 8) == 0) Claim(made.host, number);
  Wish wish{.port = place, .number = {}, .values = {}};
  if (wanted != 0) wish.number = wanted;
  if ((state & 16) != 0) wish.values[Field::Baud] = 300u * state;
  if ((state & 32) != 0) wish.values[Field::FlowControl] = state >> 4;
  if ((state & 64) != 0) wish.values[Field::DataPort] = 4000u + state;
  if ((state & 128) == 0) made.wishes.push_back(wish);
}

Case MakeCase(CBytes bytes) {
  constexpr std::size_t kMostPorts = 16;  // of the same numbers: more are only slower
  Case made;
  made.force = (bytes.Next() & 1) != 0;
  made.failing = bytes.Next();
  made.interruptedAt = bytes.Next();
  const std::uint8_t claimedFrom = bytes.Next(), foreign = bytes.Next(), ghosts = bytes.Next();
  if (claimedFrom != 0)
    std::fill(made.host.claimed->begin() + claimedFrom, made.host.claimed->end(), std::uint8_t{1});
  for (int i = 0; i < foreign % 8; ++i) {
    const std::uint8_t number = bytes.Next();
    made.host.foreign.push_back({"X\\" + std::to_string(i), "", ComName(number), (number & 1) == 0, ""});
    Claim(made.host, number);
  }
  for (int i = 0; i < ghosts % 8; ++i) Claim(made.host, bytes.Next());
  while (!bytes.IsEmpty() && made.host.ports.size() < kMostPorts) AddPort(bytes, made);
  return made;
}

bool AreReached(const std::vector<Wish>& wishes, const Host& host) {
  return std::ranges::all_of(wishes, [&](const Wish& wish) {
    const Port& port = host.ports[wish.port];
    return (!wish.number || port.Number() == *wish.number) && std::ranges::all_of(kFields, [&](Field field) {
             return !wish.values[field] || port.values[field] == wish.values[field];
           });
  });
}

// What two held already cannot be given back to one of them.
bool AnyShared(const Host& host) {
  const CHolders holders(host);
  return std::ranges::any_of(host.ports,
                             [&](const Port& port) { return holders.Of(port.Number()).size() > 1; });
}

void CheckUndo(const std::string& undo, CFakeHost& machine, const Host& before) {
  Host host = machine.host;
  const WishFile file = ReadHostFile(undo, host);
  Require(file.exit == ExitCode::Done, "an undo file is a good file");
  const Plan plan = MakePlan(host, file.wishes, true);
  Require(plan.obstacles.empty(), "nothing stands in the way back");
  Require(RunSteps(host, plan.steps, machine, {}).exit == ExitCode::Done, "the way back is gone to its end");
  for (std::size_t i = 0; i < host.ports.size(); ++i) {
    Require(machine.host.ports[i].name == before.ports[i].name &&
                machine.host.ports[i].values == before.ports[i].values,
            "an undo file takes everything back");
  }
}

void CheckRun(const Case& made, const Plan& plan, std::size_t failing, std::size_t interruptedAt) {
  CFakeHost machine(made.host);
  machine.failing = failing;
  Host host = made.host;
  std::string undo;
  const RunReport report =
      RunSteps(host, plan.steps, machine,
               {.progress = {},
                .interrupted = [&] { return interruptedAt != 0 && machine.operations == interruptedAt; },
                .keepUndo =
                    [&](const std::string& file) {
                      undo = file;
                      return true;
                    }});
  Require(!machine.heldTwice, "no number is held twice at any step");
  const auto isDone = [](const StepResult& result) { return result.state == StepState::Done; };
  const bool allDone = std::ranges::all_of(report.results, isDone);
  Require(allDone == (report.exit == ExitCode::Done), "what is not done is reported");
  if (allDone && plan.obstacles.empty())
    Require(AreReached(made.wishes, machine.host), "what is planned is reached");
  if (failing == 0 && interruptedAt == 0) Require(allDone, "only a failure or an interruption ends a run");
  if (!undo.empty() && failing == 0 && !AnyShared(made.host)) CheckUndo(undo, machine, made.host);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Case made = MakeCase(CBytes(data, size));
  const Plan plan = MakePlan(made.host, made.wishes, made.force);
  Require(plan.obstacles.empty() || plan.steps.empty(), "all is reached or refused before the first step");
  Require(!plan.obstacles.empty() || !plan.steps.empty() || AreReached(made.wishes, made.host),
          "nothing is planned only where nothing is to do");
  CheckRun(made, plan, 0, 0);
  if (made.failing != 0) CheckRun(made, plan, made.failing, 0);
  if (made.interruptedAt != 0) CheckRun(made, plan, 0, made.interruptedAt);
  return 0;
}
