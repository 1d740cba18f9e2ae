// A simulated Windows device machine.
//
// One object is one host: a device tree with its registry, the COM name database, DOS device names,
// drivers behind device interfaces, and what the user sees. Tests and stories build it, put devices into it
// (builders.h), load the DLL (dll.h), call exports, and assert on the machine, its registry and its call log:
//
//     workbench::Machine machine;
//     auto server = workbench::AddDeviceServer(machine, {.comNumbers = {7, 5, 6}});
//     workbench::Dll dll(machine);
//     workbench::DeviceElement port(machine, *server.ports[0]);
//     dll.CoInstallPort(DIF_REMOVE, port.Set(), port.Data(), &context);
//     EXPECT_FALSE(machine.ComNames().IsClaimed(7));
//     EXPECT_THAT(machine.Calls().Violations(), testing::IsEmpty());
#pragma once

#include <windows.h>

#include <mutex>

#include "workbench/machine/gate/gate.h"
#include "workbench/machine/models/com_database.h"
#include "workbench/machine/models/desktop.h"
#include "workbench/machine/models/device_sets.h"
#include "workbench/machine/models/device_tree.h"
#include "workbench/machine/models/open_files.h"
#include "workbench/machine/models/registry_sandbox.h"

namespace workbench {

// One computer. One at a time per process: simulated functions find it through Current, and its gate refuses
// a second one with std::logic_error.
class Machine {
 public:
  Machine();
  ~Machine();
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  // The machine that lives now, or null.
  [[nodiscard]] static Machine* Current();

  [[nodiscard]] Gate& Calls() { return gate_; }
  [[nodiscard]] const Gate& Calls() const { return gate_; }
  [[nodiscard]] RegistrySandbox& Registry() { return registry_; }
  [[nodiscard]] ComDatabase& ComNames() { return comNames_; }
  [[nodiscard]] DosDevices& DosNames() { return dosNames_; }
  [[nodiscard]] DeviceTree& Devices() { return devices_; }
  [[nodiscard]] DeviceSets& Sets() { return sets_; }
  [[nodiscard]] OpenFiles& Files() { return files_; }
  [[nodiscard]] Desktop& Screen() { return screen_; }
  [[nodiscard]] SystemState& System() { return system_; }

  // Held by simulated functions while they touch simulated state.
  [[nodiscard]] std::recursive_mutex& StateLock() { return stateLock_; }

 private:
  std::recursive_mutex stateLock_;
  Gate gate_;
  RegistrySandbox registry_;
  ComDatabase comNames_;
  DosDevices dosNames_;
  DeviceTree devices_;
  DeviceSets sets_;
  OpenFiles files_;
  Desktop screen_;
  SystemState system_;
};

}  // namespace workbench
