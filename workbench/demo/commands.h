// What the subcommands of the workbench program do. Each returns the program's exit status: 0 when everything
// is as it should be, 1 when not. What they throw is printed and ends in 1.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace workbench {

// The devices, as Device Manager lists them; `picture`, when not empty, is a file for a picture of the
// window.
int ShowTree(bool interactive, const std::string& picture);

struct PageOptions {
  unsigned port = 0;  // 0: all
  bool offline = false;
  bool tips = false;
  std::vector<std::pair<unsigned, std::string>> pictures{};  // of which port, and where
};
int ShowPages(const PageOptions& options);

// The sheet behind a port page's "Advanced..." button; `folder`, when not empty, gets a picture of each page.
int ShowAdvanced(unsigned port, const std::string& folder);

// Runs a program on a simulated computer of its own, which is described when the program ends. The exit
// status is the program's. `neglected`: what goes wrong in years has gone wrong there.
int RunProgram(const std::vector<std::string>& words, bool neglected);

// One installation or its like, shown step by step; `takesPorts`: with a number of ports to choose.
struct Story {
  const char* name;
  const char* summary;
  bool takesPorts;
  int (*tell)(unsigned ports);
};
[[nodiscard]] std::span<const Story> Stories();

}  // namespace workbench
