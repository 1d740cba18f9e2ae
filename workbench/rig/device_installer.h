// Windows' device installer, as far as co-installers see it.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include <vector>

#include "workbench/machine/machine.h"

namespace workbench {

// Plays the device installer for the product's devices: each installation function goes to the co-installer,
// then to the class installer and, when the co-installer asked for it, to the co-installer again with the
// class installer's result.
//
// A device of the class "Ports" is sent to KdUCoInstallPort, any other to KdUCoInstallCard. Several threads
// may install different devices at once.
class DeviceInstaller {
 public:
  DeviceInstaller(Machine& machine, const Dll& dll) : machine_(machine), dll_(dll) {}

  // DIF_INSTALLDEVICE: the class installer starts the device. Returns what the installation came to.
  DWORD Install(Device& device);
  // DIF_REMOVE: the class installer takes the device out of the tree.
  DWORD Remove(Device& device);
  // DIF_UPDATEDRIVER_UI: whether the user may go on to choose a driver.
  [[nodiscard]] bool AllowsDriverUpdate(Device& device);

  // One call of the co-installer.
  DWORD Call(Device& device, DI_FUNCTION function, COINSTALLER_CONTEXT_DATA& context);

  // What the class installer answers to DIF_INSTALLDEVICE.
  DWORD classInstallerResult = NO_ERROR;

 private:
  Machine& machine_;
  const Dll& dll_;
};

// The ports of a server after their bus has found them again, for a server whose installation removed them:
// index i gets comNumbers[i] from the class installer.
std::vector<Device*> EnumeratePorts(Machine& machine, Device& card, const ServerSpec& wanted);

}  // namespace workbench
