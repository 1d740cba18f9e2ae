// workbench show-page: a port's page in a real property sheet, compared with what the device said.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "workbench/demo/command.h"
#include "workbench/demo/picture.h"

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

  unsigned port_ = 0;
  bool offline_ = false;
  bool tips_ = false;
  std::vector<std::pair<unsigned, std::string>> files_;  // of which port, and where
  std::vector<std::pair<std::string, Picture>> pictures_;
};

}  // namespace workbench
