// The host on which a reinstallation is cut short, as the process that ends and the one that goes on build
// it.
#pragma once

#include <windows.h>

#include "tests/faults/reinstallation.h"

namespace workbench {

// What the installer has behind it.
enum class Past : int {
  First,   // nothing: the ports were never installed anew
  Second,  // an earlier reinstallation, whose backups are still there, and other settings since then
};

// Exit codes of the process that ends.
inline constexpr int kWentThrough = 0;
inline constexpr DWORD kEnded = 77;

inline const ServerSpec kVictimsPorts{.comNumbers = {7, 8}};
inline const ServerSpec kVictimsNewNames{.comNumbers = {27, 28}};

// The server, in use. Values of the pages keep a restored backup from being deleted.
inline DeviceServer BuildVictim(Machine& machine, Past past) {
  DeviceServer server = AddServerInUse(machine, kVictimsPorts, past == Past::Second);
  if (past == Past::First) return server;
  for (const Device* port : server.ports) {
    const std::wstring backup = BackupKeyOf(*server.card, *port);
    for (const PortSetting& setting : kPortSettings) {
      machine.Registry().SetDword(backup, setting.name, setting.value + 1);  // as it was then
    }
    machine.Registry().SetText(backup, L"PortName", PlacesOf(machine, *port).portName);
    machine.Registry().SetDword(backup + L"\\UI1", L"Shown", 3);
  }
  return server;
}

}  // namespace workbench
