// A simulated host inside a program that knows nothing of it.
#pragma once

#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "workbench/machine/gate/redirection.h"
#include "workbench/machine/machine.h"
#include "workbench/simulated_driver/port_driver.h"

namespace workbench {

// A machine with a device server of four ports, COM5 to COM8, and their drivers. KdUUI10.DLL is loaded from
// `folder` (with a backslash at its end) and works on it, and so does the program itself as far as it calls
// what is simulated; everything else of it is real. One per process, made before the program's own code runs.
class Agent {
 public:
  // Throws std::runtime_error when the DLL cannot be loaded or the registry refuses.
  explicit Agent(const std::wstring& folder);

  // What is different now, for people: the places of every COM name, the drivers' changed settings, message
  // boxes, and what was done wrong.
  [[nodiscard]] std::wstring Report();

 private:
  static constexpr unsigned kPorts = 4;

  [[nodiscard]] std::wstring ChangedSettings();
  [[nodiscard]] std::wstring MessageBoxes();
  [[nodiscard]] std::wstring Faults();

  std::array<PortDriver, kPorts> drivers_;  // outlive the machine
  std::vector<ParameterValues> before_;     // both sets of each port
  Machine machine_;
  DeviceServer server_;
  // Never freed: the process ends with the agent, and then a DLL must not be unloaded any more.
  const Dll& dll_;
  Redirection program_;
};

}  // namespace workbench
