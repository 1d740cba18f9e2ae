// What a command line says.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "kdport/model/fields.h"

namespace KdPort {

struct Options {
  bool json = false;
  std::vector<std::string> ports;
  bool live = false;
  double timeout = 3;  // seconds
  bool releaseGhosts = false;
  bool dryRun = false;
  bool force = false;
  std::string port;  // of a command for one port
  std::string newName;
  std::array<std::string, kFieldCount> values;  // empty: not named
  std::string file;
  std::string undo;
  std::string hardwareId;
};

}  // namespace KdPort
