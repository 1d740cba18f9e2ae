// workbench show-advanced: the sheet behind a port page's "Advanced..." button, compared with what the
// drivers and the host hold.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "workbench/demo/command.h"
#include "workbench/demo/picture.h"

namespace workbench {

class SampleHost;
class Dll;
class OpenSheet;

class ShowAdvanced : public Command {
 public:
  [[nodiscard]] const char* Name() const override { return "show-advanced"; }
  [[nodiscard]] const char* Summary() const override {
    return "Show a port's advanced settings and compare them with what the drivers and the host hold";
  }
  void Describe(CLI::App& app) override;
  [[nodiscard]] int Run() override;

 private:
  [[nodiscard]] bool Show();
  // Presses the button and looks through the sheet that comes up.
  [[nodiscard]] bool Visit(SampleHost& host, HWND portPage);
  [[nodiscard]] bool LookThrough(SampleHost& host, const OpenSheet& sheet);
  void Photograph(HWND sheet, const wchar_t* name);
  void PhotographComList(HWND sheet, HWND page);

  unsigned port_ = 1;
  std::string folder_;
  std::vector<std::pair<std::wstring, Picture>> pictures_;
};

}  // namespace workbench
