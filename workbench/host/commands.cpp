#include "workbench/host/command.h"
#include "workbench/host/show_page.h"

namespace workbench {

std::vector<std::unique_ptr<Command>> AllCommands() {
  std::vector<std::unique_ptr<Command>> commands;
  commands.push_back(std::make_unique<ShowPage>());
  return commands;
}

}  // namespace workbench
