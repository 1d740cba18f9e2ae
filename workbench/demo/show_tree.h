// workbench tree: the sample host's devices, printed or in a window to work with.
#pragma once

#include <optional>
#include <string>

#include "workbench/demo/command.h"
#include "workbench/demo/picture.h"

namespace workbench {

class SampleHost;

class ShowTree : public Command {
 public:
  [[nodiscard]] const char* Name() const override { return "tree"; }
  [[nodiscard]] const char* Summary() const override {
    return "Show the devices of the simulated host, as Device Manager does";
  }
  void Describe(CLI::App& app) override;
  [[nodiscard]] int Run() override;

 private:
  [[nodiscard]] bool Show();
  void ShowWindow(SampleHost& host);

  bool interactive_ = false;
  std::string file_;
  std::optional<Picture> picture_;
};

}  // namespace workbench
