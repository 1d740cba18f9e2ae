// workbench show-page: a port's page in a real property sheet, compared with what the device said.
#pragma once

#include <optional>
#include <string>

#include "workbench/host/command.h"
#include "workbench/host/picture.h"

namespace workbench {

class SampleHost;
class Dll;

class ShowPage : public Command {
 public:
  [[nodiscard]] const char* Name() const override { return "show-page"; }
  [[nodiscard]] const char* Summary() const override {
    return "Show a port's page and compare it with what the device said";
  }
  void Describe(CLI::App& app) override;
  [[nodiscard]] int Run() override;

 private:
  [[nodiscard]] bool ShowAll();
  [[nodiscard]] bool ShowPort(SampleHost& host, const Dll& dll, unsigned number);
  void LeaveOpen(SampleHost& host, const Dll& dll, unsigned number) const;

  unsigned port_ = 0;
  bool offline_ = false;
  bool interactive_ = false;
  std::string pictureFile_;
  std::optional<Picture> picture_;
};

}  // namespace workbench
