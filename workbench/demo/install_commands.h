// The workbench program's subcommands that tell stories of installation.
#pragma once

#include <memory>
#include <vector>

#include "workbench/demo/command.h"

namespace workbench {

// install, reinstall, rename, remove, usb; appended to `commands`.
void AddInstallCommands(std::vector<std::unique_ptr<Command>>& commands);

}  // namespace workbench
