// What the fault sweep repeats: one use of the DLL each, on a host of its own.
#pragma once

#include <windows.h>

#include <optional>
#include <ostream>
#include <string_view>
#include <vector>

#include "workbench/rig/page_sheet.h"

namespace workbench {

// What the scenarios are about. A scenario adds its device server by itself, and the sweep loads the DLL.
struct ScenarioRig : Rig {
  ScenarioRig() : Rig({.comNumbers = {}, .web = false, .loaded = false}) {}

  UsbDevice usb;
  std::optional<PageSheet> sheet;  // a port's page, opened by a scenario's `start` and closed by its `run`
};

// What goes wrong in a run: nothing, platform calls, or memory.
enum class Trouble { None, Calls, Memory };

// One use of the DLL.
struct Scenario {
  std::string_view name;
  void (*build)(ScenarioRig& rig);
  // Uses the DLL and answers whether every result is one that the export may give with this trouble; without
  // any the result must be success.
  bool (*run)(ScenarioRig& rig, Trouble trouble);
  // Whether the server's ports have settings, each of which has to be in the port or in its backup
  // afterwards.
  bool hasSettings = true;
  // Functions whose failure makes the stated steps themselves give a setting up, separated by blanks.
  std::string_view givesUp = {};
  bool takesNamesAway = false;  // ports lose their DOS devices on purpose
  bool hasWindows = false;  // messages come as the display has them, and with them some calls more or less
  // What comes before and is never disturbed; null for nothing.
  void (*start)(ScenarioRig& rig) = nullptr;
};

[[nodiscard]] std::vector<Scenario> Scenarios();

inline void PrintTo(const Scenario& scenario, std::ostream* out) {
  *out << scenario.name;
}

}  // namespace workbench
