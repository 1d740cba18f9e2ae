#include "tests/faults/port_settings.h"

#include <algorithm>

#include "workbench/rig/device_installer.h"

namespace workbench {
namespace {

constexpr wchar_t kCapability[] = L"CtsSupported";  // never restored: the driver tells it anew

bool HasSettingAt(Machine& machine, const std::wstring& key, const PortSetting& setting) {
  return machine.Registry().Dword(key, setting.name) == setting.value;
}

}  // namespace

void SetSettings(Machine& machine, const DeviceServer& server, bool pages) {
  for (const Device* port : server.ports) {
    const std::wstring key = ParametersKeyOf(port->instanceId);
    for (const PortSetting& setting : kPortSettings) {
      machine.Registry().SetDword(key, setting.name, setting.value);
    }
    machine.Registry().SetDword(key, kCapability, 1);
    if (pages) machine.Registry().SetDword(key + L"\\UI1", L"Shown", 3);
  }
}

bool HasSettings(Machine& machine, const Device& port) {
  return std::ranges::all_of(kPortSettings, [&](const PortSetting& setting) {
    return HasSettingAt(machine, ParametersKeyOf(port.instanceId), setting);
  });
}

bool KeepsSettings(Machine& machine, const Device& port) {
  return std::ranges::all_of(kPortSettings, [&](const PortSetting& setting) {
    return HasSettingAt(machine, ParametersKeyOf(port.instanceId), setting) ||
           HasSettingAt(machine, BackupKeyOf(port), setting);
  });
}

}  // namespace workbench
