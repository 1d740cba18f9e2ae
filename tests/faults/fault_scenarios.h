// What the fault sweep repeats: one use of the DLL each, on a host of its own.
#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <ostream>
#include <span>
#include <string_view>

#include "workbench/drivers/port_driver.h"
#include "workbench/machine/machine.h"

namespace workbench {

// One host with what the scenarios need; the drivers outlive the machine.
struct World {
  std::array<PortDriver, 3> drivers;
  Machine machine;
  DeviceServer server;
  UsbDevice usb;
};

// One use of the DLL.
struct Scenario {
  std::string_view name;
  void (*build)(World& world);
  // Uses the DLL and answers whether every result is one that the export may give when its platform fails;
  // `undisturbed` tells that nothing was failed, and the result must be success.
  bool (*run)(World& world, Dll& dll, bool undisturbed);
  // Whether the settings that the ports had are still in the port, in its backup or in the driver.
  bool (*kept)(World& world);
  // Functions whose failure makes the stated steps themselves give a setting up, separated by blanks.
  std::string_view givesUp = {};
};

[[nodiscard]] std::span<const Scenario> Scenarios();

inline void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

}  // namespace workbench
