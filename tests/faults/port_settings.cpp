#include "tests/faults/port_settings.h"

#include <algorithm>

namespace workbench {
namespace {

constexpr wchar_t kCapability[] = L"CtsSupported";  // never restored: the driver tells it anew

bool HasSettingAt(Machine& machine, const std::wstring& key, const PortSetting& setting) {
  return machine.Registry().Dword(key, setting.name) == setting.value;
}

}  // namespace

DeviceServer AddServerInUse(Machine& machine, const ServerSpec& wanted, bool pages) {
  DeviceServer server = AddDeviceServer(machine, wanted);
  for (const Device* port : server.ports) {
    const std::wstring key = ParametersKeyOf(port->instanceId);
    for (const PortSetting& setting : kPortSettings) {
      machine.Registry().SetDword(key, setting.name, setting.value);
    }
    machine.Registry().SetDword(key, kCapability, 1);
    if (pages) machine.Registry().SetDword(key + L"\\UI1", L"Shown", 3);
  }
  return server;
}

// As the names of backups are made: of the middle segment of the id only its last character stays.
std::wstring BackupKeyOf(const Device& port) {
  const std::wstring& id = port.instanceId;
  const std::size_t first = id.find(L'\\');
  const std::size_t second = id.find(L'\\', first + 1);
  return ParametersKeyOf(port.parent->instanceId) + L"\\" + id.substr(0, first) + L"_" + id[second - 1] +
         L"_" + id.substr(second + 1);
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

void FindPortsAgain(Machine& machine, DeviceServer& server, const ServerSpec& wanted) {
  for (unsigned index = 0; index < server.ports.size(); ++index) {
    Device*& port = server.ports[index];
    if (port->removed) port = &AddServerPort(machine, *server.card, wanted, index, wanted.comNumbers[index]);
  }
}

}  // namespace workbench
