// How kdport ends, the same for all commands.
#pragma once

namespace KdPort {

enum class ExitCode : int {
  Done = 0,         // done, or nothing found
  Failed = 1,       // something failed or was found; each is named
  BadUse = 2,       // the command line or a file is wrong; nothing was changed
  NoRights = 5,     // administrator rights are missing
  NoSuchPort = 259  // a port was named that the host does not have
};

}  // namespace KdPort
