#include "kdport/run/runner.h"

#include <set>

#include "kdport/files/host_file.h"

namespace KdPort {

namespace {

class CRun {
 public:
  CRun(Host& host, CHostAccess& access, const Watcher& watcher)
      : host_(host), access_(access), watcher_(watcher) {}

  RunReport Take(const std::vector<Step>& steps) {
    for (const Step& step : steps) report_.results.push_back({.step = step});
    if (!steps.empty() && !KeepUndo(steps)) return std::move(report_);
    for (std::size_t i = 0; i < steps.size() && !Ends(); ++i) {
      if (watcher_.progress) watcher_.progress(i, steps.size());
      TakeOne(report_.results[i]);
    }
    return std::move(report_);
  }

 private:
  bool KeepUndo(const std::vector<Step>& steps) {
    if (!watcher_.keepUndo) return true;
    std::set<std::size_t> ports;
    for (const Step& step : steps) {
      if (step.kind != StepKind::Release) ports.insert(step.port);
    }
    if (watcher_.keepUndo(WriteHostFile(host_, std::vector(ports.begin(), ports.end())))) return true;
    report_.faults.push_back({Text::UndoNotWritten, {}});
    report_.exit = ExitCode::Failed;
    for (StepResult& result : report_.results) result.why = {Text::UndoNotWritten, {}};
    return false;
  }

  bool Ends() {
    if (report_.exit == ExitCode::NoRights) return true;
    if (!watcher_.interrupted || !watcher_.interrupted()) return false;
    report_.faults.push_back({Text::Interrupted, {}});
    report_.exit = ExitCode::Failed;
    return true;
  }

  void TakeOne(StepResult& result) {
    if (const auto why = Hindrance(result.step)) return Account(result, StepState::NotBegun, *why);
    const Outcome outcome = Carry(result.step);
    if (outcome.kind == Outcome::Done) {
      result.state = StepState::Done;
      return Follow(result.step);
    }
    if (outcome.kind == Outcome::Gone) gone_.insert(result.step.port);
    Account(result, StepState::Failed, Why(result.step, outcome));
    if (outcome.kind != Outcome::NoRights) return;
    report_.exit = ExitCode::NoRights;
    for (StepResult& other : report_.results) {
      if (other.state == StepState::NotBegun) other.why = {Text::RightsMissing, {}};
    }
  }

  // The host after a step: who has a number changes.
  void Follow(const Step& step) {
    if (step.kind == StepKind::Release) SetClaimed(host_, step.to, false);
    if (step.kind != StepKind::Rename) return;
    SetClaimed(host_, step.from, false);
    SetClaimed(host_, step.to, true);
    host_.ports[step.port].name = ComName(step.to);
  }

  std::optional<Message> Hindrance(const Step& step) const {
    if (step.kind == StepKind::Release) return std::nullopt;
    const Port& port = host_.ports[step.port];
    if (gone_.contains(step.port)) return Message{Text::DeviceGone, {DisplayName(port)}};
    if (step.kind != StepKind::Rename) return std::nullopt;
    for (const Holder& holder : HoldersOf(host_, step.to)) {
      if (holder.port == &port) continue;
      return Message{Text::NumberStillHeld, {DisplayName(port), ComName(step.to), DisplayName(holder)}};
    }
    return std::nullopt;
  }

  Outcome Carry(const Step& step) {
    if (step.kind == StepKind::Release) return access_.Release(step.to);
    const Port& port = host_.ports[step.port];
    if (step.kind == StepKind::Rename) return access_.Rename(port, step.to);
    if (step.kind == StepKind::Store) return access_.Store(port, step.values);
    return access_.Mend(port, step.place);
  }

  Message Why(const Step& step, const Outcome& outcome) const {
    const std::string who =
        step.kind == StepKind::Release ? ComName(step.to) : DisplayName(host_.ports[step.port]);
    if (outcome.kind == Outcome::Gone) return {Text::DeviceGone, {who}};
    if (outcome.kind == Outcome::NoRights) return {Text::RightsMissing, {}};
    return {Text::StepFailed, {who, outcome.detail}};
  }

  void Account(StepResult& result, StepState state, Message why) {
    result.state = state;
    result.why = std::move(why);
    report_.exit = ExitCode::Failed;
  }

  Host& host_;
  CHostAccess& access_;
  const Watcher& watcher_;
  std::set<std::size_t> gone_;
  RunReport report_;
};

}  // namespace

RunReport RunSteps(Host& host, const std::vector<Step>& steps, CHostAccess& access, const Watcher& watcher) {
  return CRun(host, access, watcher).Take(steps);
}

}  // namespace KdPort
