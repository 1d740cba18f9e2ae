// workbench run: another program, unchanged, on a simulated host.
#pragma once

#include <string>

#include "workbench/demo/command.h"

namespace workbench {

// The exit status is the program's own; the host's state is printed when it ends.
class RunProgram : public Command {
 public:
  [[nodiscard]] const char* Name() const override { return "run"; }
  [[nodiscard]] const char* Summary() const override {
    return "Run a program that uses KdUUI10.DLL on a simulated host: run PROGRAM [argument...]";
  }
  void Describe(CLI::App& app) override;
  [[nodiscard]] int Run() override;

 private:
  CLI::App* app_ = nullptr;
};

}  // namespace workbench
