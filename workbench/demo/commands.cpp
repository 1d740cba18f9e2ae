#include "workbench/demo/command.h"
#include "workbench/demo/install_commands.h"
#include "workbench/demo/run_program.h"
#include "workbench/demo/show_advanced.h"
#include "workbench/demo/show_page.h"
#include "workbench/demo/show_tree.h"

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
