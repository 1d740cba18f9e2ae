#include "kdport/commands/command_run.h"

#include <chrono>
#include <numeric>

#include "kdport/files/host_file.h"
#include "kdport/model/selection.h"
#include "kdport/output/documents.h"
#include "kdport/output/report_text.h"
#include "kdport/plan/check.h"
#include "kdport/run/runner.h"

namespace KdPort {

namespace {

constexpr bool IsDone(ExitCode exit) {
  return exit == ExitCode::Done;
}

}  // namespace

ExitCode CCommandRun::List() {
  if (const ExitCode exit = ReadHost(); !IsDone(exit)) return exit;
  if (const ExitCode exit = ChoosePorts(options_.ports); !IsDone(exit)) return exit;
  std::vector<LiveStatus> live;
  if (options_.live) {
    const auto timeout = std::chrono::duration<double>(options_.timeout);
    live = surroundings_.AskServers(host_, ports_,
                                    std::chrono::duration_cast<std::chrono::milliseconds>(timeout));
  }
  Print(options_.live ? LiveText(host_, ports_, live) : ListText(host_, ports_),
        [&] { return ListDocument(host_, ports_, live); });
  return ExitCode::Done;
}

ExitCode CCommandRun::Check() {
  if (const ExitCode exit = ReadHost(); !IsDone(exit)) return exit;
  if (const ExitCode exit = ChoosePorts(options_.ports); !IsDone(exit)) return exit;
  const std::vector<Finding> findings = CheckHost(host_, ports_, options_.ports.empty());
  Print(findings.empty() ? "All places agree.\n" : FindingsText(findings),
        [&] { return CheckDocument(host_, findings); });
  return findings.empty() ? ExitCode::Done : ExitCode::Failed;
}

// What only a person can decide is named beside what is mended.
ExitCode CCommandRun::Repair() {
  if (const ExitCode exit = Prepare(options_.ports); !IsDone(exit)) return exit;
  const std::vector<Finding> findings = CheckHost(host_, ports_, options_.releaseGhosts);
  Plan plan{.changes = {}, .obstacles = {}, .steps = RepairSteps(findings, options_.releaseGhosts)};
  std::vector<Message> left;
  for (const Finding& finding : findings) {
    if (!finding.mend) left.push_back(finding.message);
  }
  const ExitCode exit = Change(plan, {});
  for (const Message& message : left) surroundings_.PrintError(MessageText(message));
  return IsDone(exit) && !left.empty() ? ExitCode::Failed : exit;
}

ExitCode CCommandRun::Rename() {
  const std::int32_t number = ComNumber(options_.newName);
  if (number == 0) {
    return Fail(ExitCode::BadUse,
                {{Text::OptionBad, {"COMn", options_.newName, "a COM name from COM1 to COM255"}}});
  }
  if (const ExitCode exit = Prepare({options_.port}); !IsDone(exit)) return exit;
  if (ports_.size() != 1) {
    return Fail(ExitCode::BadUse, {{Text::NotOnePort, {options_.port, std::to_string(ports_.size())}}});
  }
  return Change(MakePlan(host_, {{.port = ports_.front(), .number = number, .values = {}}}, options_.force),
                {});
}

ExitCode CCommandRun::Set() {
  return ChangeValues(FieldGroup::Settings);
}

ExitCode CCommandRun::Network() {
  return ChangeValues(FieldGroup::Network);
}

ExitCode CCommandRun::Export() {
  if (const ExitCode exit = ReadHost(); !IsDone(exit)) return exit;
  ports_ = Select(host_, {"all"}).ports;
  const std::string file = WriteHostFile(host_, ports_);
  const bool toFile = !options_.file.empty();
  if (toFile && surroundings_.WriteFile(options_.file, file, true) != FileResult::Done) {
    return Fail(ExitCode::Failed, {{Text::FileUnwritable, {options_.file}}});
  }
  Print(toFile ? std::string() : file, [&] { return ListDocument(host_, ports_); });
  return ExitCode::Done;
}

ExitCode CCommandRun::Apply() {
  if (const ExitCode exit = RequireRights(); !IsDone(exit)) return exit;
  std::string content;
  if (!surroundings_.ReadFile(options_.file, content)) {
    return Fail(ExitCode::BadUse, {{Text::FileUnreadable, {options_.file}}});
  }
  if (const ExitCode exit = ReadHost(); !IsDone(exit)) return exit;
  const WishFile file = ReadHostFile(content, host_);
  if (!IsDone(file.exit)) return Fail(file.exit, file.faults);
  return Change(MakePlan(host_, file.wishes, options_.force),
                [this](const std::string& undoFile) { return WriteUndo(undoFile); });
}

ExitCode CCommandRun::UpdateDriver() {
  if (const ExitCode exit = RequireRights(); !IsDone(exit)) return exit;
  bool restartNeeded = false;
  const Outcome outcome = surroundings_.UpdateDriver(options_.hardwareId, options_.file, restartNeeded);
  if (outcome.kind != Outcome::Done) {
    return Fail(ExitCode::Failed,
                {{Text::UpdateFailed, {options_.hardwareId, options_.file, outcome.detail}}});
  }
  Print("The driver was installed.\n" +
            std::string(restartNeeded ? "Restart Windows: the driver is used from then on.\n"
                                      : "Windows need not be restarted.\n"),
        [&] { return UpdateDocument(options_.hardwareId, options_.file, true, restartNeeded); });
  return ExitCode::Done;
}

ExitCode CCommandRun::Fail(ExitCode exit, const std::vector<Message>& faults) {
  if (options_.json) surroundings_.Print(ErrorDocument(exit, faults));
  for (const Message& fault : faults) surroundings_.PrintError("kdport: " + MessageText(fault));
  return exit;
}

ExitCode CCommandRun::ReadHost() {
  const Outcome outcome = surroundings_.Access().Read(host_);
  if (outcome.kind == Outcome::Done) return ExitCode::Done;
  return Fail(ExitCode::Failed, {{Text::HostUnread, {outcome.detail}}});
}

ExitCode CCommandRun::ChoosePorts(const std::vector<std::string>& words) {
  if (words.empty()) {
    ports_.resize(host_.ports.size());
    std::iota(ports_.begin(), ports_.end(), std::size_t{0});
    return ExitCode::Done;
  }
  Selection selection = Select(host_, words);
  ports_ = std::move(selection.ports);
  std::vector<Message> faults;
  faults.reserve(selection.unmatched.size());
  for (const std::string& word : selection.unmatched) faults.push_back({Text::NoSuchPort, {word}});
  return faults.empty() ? ExitCode::Done : Fail(ExitCode::NoSuchPort, faults);
}

ExitCode CCommandRun::RequireRights() {
  if (options_.dryRun || surroundings_.IsAdministrator()) return ExitCode::Done;
  return Fail(ExitCode::NoRights, {{Text::RightsMissing, {}}});
}

ExitCode CCommandRun::Prepare(const std::vector<std::string>& words) {
  if (const ExitCode exit = RequireRights(); !IsDone(exit)) return exit;
  if (const ExitCode exit = ReadHost(); !IsDone(exit)) return exit;
  return ChoosePorts(words);
}

ExitCode CCommandRun::ChangeValues(FieldGroup group) {
  CFieldValues values;
  if (const ExitCode exit = ReadValues(group, values); !IsDone(exit)) return exit;
  if (const ExitCode exit = Prepare(options_.ports); !IsDone(exit)) return exit;
  std::vector<Wish> wishes;
  wishes.reserve(ports_.size());
  for (const std::size_t port : ports_) wishes.push_back({.port = port, .number = {}, .values = values});
  return Change(MakePlan(host_, wishes, options_.force), {});
}

ExitCode CCommandRun::ReadValues(FieldGroup group, CFieldValues& values) {
  std::vector<Message> faults;
  std::string names;
  for (const Field field : kFields) {
    if (GroupOf(field) != group) continue;
    const std::string name = "--" + std::string(ColumnOf(field));
    names += (names.empty() ? "" : ", ") + name;
    const std::string& text = options_.values[static_cast<std::size_t>(field)];
    if (text.empty()) continue;
    values[field] = ValueOf(field, text);
    if (!values[field]) faults.push_back({Text::OptionBad, {name, text, std::string(RangeOf(field))}});
  }
  if (faults.empty() && values.IsEmpty()) faults.push_back({Text::NothingNamed, {names}});
  return faults.empty() ? ExitCode::Done : Fail(ExitCode::BadUse, faults);
}

ExitCode CCommandRun::Change(const Plan& plan, const KeepUndo& keepUndo) {
  if (!plan.obstacles.empty() || options_.dryRun || plan.steps.empty()) {
    PrintPlan(plan);
    return plan.obstacles.empty() ? ExitCode::Done : ExitCode::Failed;
  }
  const RunReport report = RunSteps(
      host_, plan.steps, surroundings_.Access(),
      {.progress = [this](std::size_t over, std::size_t all) { surroundings_.ShowProgress(over, all); },
       .interrupted = [this] { return surroundings_.IsInterrupted(); },
       .keepUndo = keepUndo});
  surroundings_.EndChanges();
  Print(RunText(host_, report), [&] { return ChangeDocument(host_, plan, &report); });
  return report.exit;
}

void CCommandRun::PrintPlan(const Plan& plan) {
  const std::string text = PlanText(host_, plan);
  Print(text.empty() ? "Nothing is to be done.\n" : text,
        [&] { return ChangeDocument(host_, plan, nullptr); });
}

// Without --undo no file is replaced: the one of an earlier run may be what somebody wants back.
bool CCommandRun::WriteUndo(const std::string& content) {
  constexpr int kMostFiles = 1000;
  std::string path = options_.undo;
  FileResult result = FileResult::Exists;
  if (!path.empty()) result = surroundings_.WriteFile(path, content, true);
  for (int i = 1; result == FileResult::Exists && i <= kMostFiles; ++i) {
    path = options_.file + ".undo" + (i > 1 ? "-" + std::to_string(i) : "") + ".csv";
    result = surroundings_.WriteFile(path, content, false);
  }
  if (result != FileResult::Done) return false;
  surroundings_.PrintError("kdport apply \"" + path + "\" takes back what follows.\n");
  return true;
}

void CCommandRun::Print(const std::string& text, const std::function<std::string()>& document) {
  surroundings_.Print(options_.json ? document() : text);
}

}  // namespace KdPort
