// The reinstallation of a device server, from the copy of its ports' settings to the ports that have them
// again.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "workbench/machine/machine.h"
#include "workbench/rig/device_installer.h"

namespace workbench {

// A value of a port's key. A backup holds it under the same name.
struct PortSetting {
  const wchar_t* name;
  std::uint32_t value;
};
inline constexpr std::array<PortSetting, 3> kPortSettings = {
    {{L"Baudrate", 115200}, {L"FlowControl", 2}, {L"ConnectionIdleTimeout", 90}}};

// A server of these ports, in use: with settings, a capability and, with `pages`, with values of the pages.
DeviceServer AddServerInUse(Machine& machine, const ServerSpec& wanted, bool pages);
// Whether all settings are in the port's key; each in its key or in the backup below its server.
[[nodiscard]] bool HasSettings(Machine& machine, const Device& port);
[[nodiscard]] bool KeepsSettings(Machine& machine, const Device& port);
// The key in which a port's settings are kept while its server is installed again.
[[nodiscard]] std::wstring BackupKeyOf(const Device& card, const Device& port);

// What the class installer answers, and a co-installer has to pass on.
inline constexpr DWORD kInstallResult = 1234;

// The bus looks for the server's ports: one that was removed is a new device, with the name that the class
// installer gives it; all are started.
void FindPortsAgain(Machine& machine, DeviceServer& server, const ServerSpec& wanted);
// The passes of DIF_INSTALLDEVICE for a device, the class installer between them; the second where the first
// asks for it.
struct InstallResults {
  DWORD before = NO_ERROR;
  DWORD after = NO_ERROR;
};
InstallResults InstallDevice(Machine& machine, DeviceInstaller& installer, Device& device);
// The server's driver is installed again, the bus finds the ports, and they are installed. The results of the
// server, then of the ports.
std::vector<InstallResults> Reinstall(Machine& machine, DeviceInstaller& installer, DeviceServer& server,
                                      const ServerSpec& wanted);

}  // namespace workbench
