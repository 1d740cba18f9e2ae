// Windows' device installer, as far as co-installers see it.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include <string>

#include "workbench/machine/builders.h"
#include "workbench/machine/dll.h"

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

 private:
  Machine& machine_;
  const Dll& dll_;
};

// The bus looks for the ports of a server: index i, where it was removed, is a new device with the name
// comNumbers[i] from the class installer. The server has as many ports as there are numbers.
void FindPortsAgain(Machine& machine, DeviceServer& server, const ServerSpec& wanted);

// The key in which a port's settings are kept while its server is installed again: of the middle part of the
// id only its last character is in the name.
[[nodiscard]] std::wstring BackupKeyOf(const Device& port);

}  // namespace workbench
