// A simulated host inside a program that knows nothing of it.
#pragma once

#include <windows.h>

#include <string>

#include "workbench/demo/report.h"
#include "workbench/machine/gate/redirection.h"

namespace workbench {

// A rig with a device server of four ports, COM5 to COM8, and its HTTP side. KdUUI10.DLL is loaded from
// `folder` (with a backslash at its end) and works on it, and so does the program itself as far as it calls
// what is simulated; everything else of it is real. One per process, made before the program's own code runs.
class Agent {
 public:
  // Throws std::runtime_error when the DLL cannot be loaded or the registry refuses.
  // `neglected`: with what goes wrong in years, for a program that mends it (NeglectHost).
  Agent(const std::wstring& folder, bool neglected);

  // What is different now, for people: the places of every COM name, the drivers' changed settings, message
  // boxes, and what was done wrong.
  [[nodiscard]] std::wstring Report();

 private:
  void StartWeb();

  // Never freed: the process ends with the agent, and the server's threads have ended before.
  HttpDeviceServer& web_ = *new HttpDeviceServer;
  Rig rig_{{.comNumbers = {5, 6, 7, 8}, .web = false, .loaded = false}};
  DriverValues before_;
  // Never freed: the process ends with the agent, and then a DLL must not be unloaded any more.
  const Dll& dll_;
  Redirection program_;
};

}  // namespace workbench
