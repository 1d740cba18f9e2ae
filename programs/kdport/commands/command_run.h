// One run of one command.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "kdport/commands/options.h"
#include "kdport/commands/surroundings.h"
#include "kdport/model/exit_code.h"
#include "kdport/model/texts.h"
#include "kdport/plan/planner.h"

namespace KdPort {

// The operations are the commands. Each prints its result and returns how it ended. One run per object.
class CCommandRun {
 public:
  CCommandRun(const Options& options, CSurroundings& surroundings)
      : options_(options), surroundings_(surroundings) {}

  [[nodiscard]] ExitCode List();
  [[nodiscard]] ExitCode Check();
  [[nodiscard]] ExitCode Repair();
  [[nodiscard]] ExitCode Rename();
  [[nodiscard]] ExitCode Set();
  [[nodiscard]] ExitCode Network();
  [[nodiscard]] ExitCode Export();
  [[nodiscard]] ExitCode Apply();
  [[nodiscard]] ExitCode UpdateDriver();

  // Prints why the command does not come to its work, and returns `exit`.
  ExitCode Fail(ExitCode exit, const std::vector<Message>& faults);

 private:
  using KeepUndo = std::function<bool(const std::string& undoFile)>;

  // These return Done, or print why not.
  ExitCode ReadHost();
  ExitCode ChoosePorts(const std::vector<std::string>& words);  // without any, all that are known
  ExitCode RequireRights();                                     // unless nothing is going to be changed
  ExitCode Prepare(const std::vector<std::string>& words);      // all three
  ExitCode Change(const Plan& plan, const KeepUndo& keepUndo);
  ExitCode ChangeValues(FieldGroup group);
  ExitCode ReadValues(FieldGroup group, CFieldValues& values);
  [[nodiscard]] bool WriteUndo(const std::string& content);
  void PrintPlan(const Plan& plan);
  void Print(const std::string& text, const std::function<std::string()>& document);

  const Options& options_;
  CSurroundings& surroundings_;
  Host host_;
  std::vector<std::size_t> ports_;
};

}  // namespace KdPort
