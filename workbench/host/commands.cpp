#include "workbench/host/command.h"
#include "workbench/host/run_program.h"
#include "workbench/host/show_advanced.h"
#include "workbench/host/show_page.h"
#include "workbench/host/show_tree.h"
#include "workbench/stories/install_commands.h"

namespace workbench {

std::vector<std::unique_ptr<Command>> AllCommands() {
  std::vector<std::unique_ptr<Command>> commands;
  commands.push_back(std::make_unique<ShowTree>());
  commands.push_back(std::make_unique<ShowPage>());
  commands.push_back(std::make_unique<ShowAdvanced>());
  AddInstallCommands(commands);
  commands.push_back(std::make_unique<RunProgram>());
  return commands;
}

}  // namespace workbench
