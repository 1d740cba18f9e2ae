// The subcommands of the workbench program.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <vector>

namespace workbench {

// One subcommand. Lives as long as the program.
class Command {
 public:
  virtual ~Command() = default;
  [[nodiscard]] virtual const char* Name() const = 0;
  [[nodiscard]] virtual const char* Summary() const = 0;
  // Adds the command's options to its part of the command line.
  virtual void Describe(CLI::App& app) = 0;
  // Does the work, with the options as given. Returns the program's exit status: 0 when everything is as it
  // should be, 1 when not. What it throws is printed and ends in 1.
  [[nodiscard]] virtual int Run() = 0;
};

// All of them, in the order of the help. A new command is added here.
[[nodiscard]] std::vector<std::unique_ptr<Command>> AllCommands();

}  // namespace workbench
