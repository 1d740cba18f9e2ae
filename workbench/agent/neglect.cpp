#include "workbench/agent/neglect.h"

namespace workbench {

void NeglectHost(Machine& machine, const DeviceServer& server) {
  const Device& modem = AddForeignPort(machine, 3);
  machine.Registry().SetText(EnumKeyOf(modem.instanceId), L"FriendlyName", L"Modem 56K (COM3)");
  AddServerPort(machine, *server.card, {.started = false}, 4, 9).present = false;
  machine.ComNames().Claim(12);
  const std::wstring second = server.ports.at(1)->port->kernelDevice;
  machine.Registry().SetText(kSerialCommKey, second, L"COM16");
  machine.Registry().SetText(EnumKeyOf(server.ports.at(2)->instanceId), L"FriendlyName",
                             L"Veltranet Serial Port (COM17)");
  machine.DosNames().Remove(L"COM8", L"", false);
  machine.ComNames().Release(8);
}

}  // namespace workbench
