// What the fault sweep repeats: one use of the DLL each, on a host of its own.
#pragma once

#include <windows.h>

#include <array>
#include <memory>
#include <ostream>
#include <string_view>
#include <vector>

#include "workbench/machine/machine.h"
#include "workbench/simulated_driver/port_driver.h"

class PortSheet;

namespace workbench {

// One host with what the scenarios need; the drivers outlive the machine.
struct World {
  std::array<PortDriver, 3> drivers;
  Machine machine;
  DeviceServer server;
  UsbDevice usb;
  std::shared_ptr<PortSheet> sheet;  // a port's page, opened by a scenario's `start` and closed by its `run`
};

// What goes wrong in a run: nothing, platform calls, or memory.
enum class Trouble { None, Calls, Memory };

// One use of the DLL.
struct Scenario {
  std::string_view name;
  void (*build)(World& world);
  // Uses the DLL and answers whether every result is one that the export may give with this trouble; without
  // any the result must be success.
  bool (*run)(World& world, Dll& dll, Trouble trouble);
  // Whether the server's ports have settings, each of which has to be in the port or in its backup
  // afterwards.
  bool hasSettings = true;
  // Functions whose failure makes the stated steps themselves give a setting up, separated by blanks.
  std::string_view givesUp = {};
  bool takesNamesAway = false;  // ports lose their DOS devices on purpose
  bool hasWindows = false;  // messages come as the display has them, and with them some calls more or less
  // What comes before and is never disturbed; null for nothing.
  void (*start)(World& world, Dll& dll) = nullptr;
};

[[nodiscard]] std::vector<Scenario> Scenarios();

inline void PrintTo(const Scenario& scenario, std::ostream* out) {
  *out << scenario.name;
}

}  // namespace workbench
