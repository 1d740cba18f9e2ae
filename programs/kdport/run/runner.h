// Takes the steps of a plan on a host, and accounts for each.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kdport/model/exit_code.h"
#include "kdport/model/texts.h"
#include "kdport/run/host_access.h"

namespace KdPort {

// Who watches a run: the command, on the thread of the run.
struct Watcher {
  // Before each step: how many are over, of how many. May be empty.
  std::function<void(std::size_t over, std::size_t all)> progress;
  // Between two steps: whether somebody wants the run to end here. May be empty.
  std::function<bool()> interrupted;
  // Before the first step: keeps the file that `apply` takes back; false when that failed. Empty when no such
  // file is wanted.
  // The way back is refused where a number was held twice before: `apply` names who has it.
  std::function<bool(const std::string& undoFile)> keepUndo;
};

enum class StepState { Done, Failed, NotBegun };

struct StepResult {
  Step step;
  StepState state = StepState::NotBegun;
  Message why{Text::Interrupted, {}};  // of what is not done
};

struct RunReport {
  std::vector<StepResult> results;  // one for each step, in order
  std::vector<Message> faults;      // of the run as a whole
  ExitCode exit = ExitCode::Done;
};

// Takes the steps in order. A step that fails ends neither the run nor the rule that no number is held twice:
// a rename whose number has not become free, and what comes later for a device that has gone, is not begun.
// Without rights the run ends. `host` is what the steps were planned on; it follows names and claims on their
// way.
[[nodiscard]] RunReport RunSteps(Host& host, const std::vector<Step>& steps, CHostAccess& access,
                                 const Watcher& watcher);

}  // namespace KdPort
