#include "workbench/rig/device_installer.h"

#include <mutex>
#include <optional>

namespace workbench {

DWORD DeviceInstaller::Call(Device& device, DI_FUNCTION function, COINSTALLER_CONTEXT_DATA& context) {
  std::optional<DeviceElement> element;
  {
    const std::lock_guard lock(machine_.StateLock());
    element.emplace(machine_, device);
  }
  const bool isPort = IsEqualGUID(device.classGuid, kPortsClass) != 0;
  const Dll::CoInstaller coInstaller = isPort ? dll_.CoInstallPort : dll_.CoInstallCard;
  const DWORD result = coInstaller(function, element->Set(), element->Data(), &context);
  const std::lock_guard lock(machine_.StateLock());
  element.reset();
  return result;
}

DWORD DeviceInstaller::Install(Device& device) {
  COINSTALLER_CONTEXT_DATA context{};
  const DWORD before = Call(device, DIF_INSTALLDEVICE, context);
  if (before != NO_ERROR && before != ERROR_DI_POSTPROCESSING_REQUIRED) return before;
  if (classInstallerResult == NO_ERROR) {
    const std::lock_guard lock(machine_.StateLock());
    machine_.Devices().Start(device);
  }
  if (before == NO_ERROR) return classInstallerResult;
  context.PostProcessing = TRUE;
  context.InstallResult = classInstallerResult;
  return Call(device, DIF_INSTALLDEVICE, context);
}

DWORD DeviceInstaller::Remove(Device& device) {
  COINSTALLER_CONTEXT_DATA context{};
  const DWORD before = Call(device, DIF_REMOVE, context);
  if (before != NO_ERROR && before != ERROR_DI_POSTPROCESSING_REQUIRED) return before;
  const std::lock_guard lock(machine_.StateLock());
  machine_.Devices().Remove(device);
  return NO_ERROR;
}

bool DeviceInstaller::AllowsDriverUpdate(Device& device) {
  COINSTALLER_CONTEXT_DATA context{};
  return Call(device, DIF_UPDATEDRIVER_UI, context) == NO_ERROR;
}

std::vector<Device*> EnumeratePorts(Machine& machine, Device& card, const ServerSpec& wanted) {
  std::vector<Device*> ports;
  unsigned index = 0;
  for (const unsigned number : wanted.comNumbers) {
    ports.push_back(&AddServerPort(machine, card, wanted, index++, number));
  }
  return ports;
}

}  // namespace workbench
