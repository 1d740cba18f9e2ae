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
  const KdUCoInstallPortFn coInstaller = isPort ? dll_.CoInstallPort : dll_.CoInstallCard;
  const DWORD result = coInstaller(function, element->Set(), element->Data(), &context);
  const std::lock_guard lock(machine_.StateLock());
  element.reset();
  return result;
}

DWORD DeviceInstaller::Install(Device& device) {
  COINSTALLER_CONTEXT_DATA context{};
  const DWORD before = Call(device, DIF_INSTALLDEVICE, context);
  if (before != NO_ERROR && before != ERROR_DI_POSTPROCESSING_REQUIRED) return before;
  {
    const std::lock_guard lock(machine_.StateLock());
    machine_.Devices().Start(device);
  }
  if (before == NO_ERROR) return NO_ERROR;
  context.PostProcessing = TRUE;
  context.InstallResult = NO_ERROR;
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

void FindPortsAgain(Machine& machine, DeviceServer& server, const ServerSpec& wanted) {
  server.ports.resize(wanted.comNumbers.size());
  for (unsigned index = 0; index < server.ports.size(); ++index) {
    Device*& port = server.ports[index];
    if (port == nullptr || port->removed)
      port = &AddServerPort(machine, *server.card, wanted, index, wanted.comNumbers[index]);
  }
}

std::wstring BackupKeyOf(const Device& port) {
  const std::wstring& id = port.instanceId;
  const std::size_t first = id.find(L'\\');
  const std::size_t second = id.find(L'\\', first + 1);
  return ParametersKeyOf(port.parent->instanceId) + L"\\" + id.substr(0, first) + L"_" + id[second - 1] +
         L"_" + id.substr(second + 1);
}

}  // namespace workbench
