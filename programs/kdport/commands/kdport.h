// The command line.
#pragma once

#include <string>
#include <vector>

#include "kdport/commands/surroundings.h"

namespace KdPort {

// Runs one command: the words after the program's name. Returns the exit status.
[[nodiscard]] int RunKdPort(std::vector<std::string> words, CSurroundings& surroundings);

}  // namespace KdPort
