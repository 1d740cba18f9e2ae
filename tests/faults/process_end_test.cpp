// A process that ends while it reinstalls a device server loses nothing, whichever platform call it ends at.
#include <gmock/gmock.h>

#include "tests/faults/port_settings.h"
#include "workbench/rig/rig.h"

namespace workbench {
namespace {

// In front of every call, each setting and the COM name of each port are in the port or in its backup: what
// is there is all that the next process has. First with nothing behind it; then with values of the pages,
// which keep the backups; then with those backups there, and other settings since.
TEST(ProcessEnd, KeepsSettingsAndNamesAtEveryCallOfAReinstallation) {
  Rig rig({.comNumbers = {7, 8}, .web = false});
  Machine& machine = rig.machine;
  SetSettings(machine, rig.server, false);
  const std::vector<Device*> ports = rig.server.ports;  // the bus finds others in their place
  DeviceInstaller installer = rig.Installer();
  for (const char* past : {"nothing", "values of the pages", "earlier backups"}) {
    SCOPED_TRACE(past);
    std::size_t calls = 0;
    std::string lost;
    machine.Calls().AtEachCall([&](const char* function) {
      ++calls;
      for (const Device* port : ports) {
        const std::wstring name = port == ports[0] ? L"COM7" : L"COM8";
        const auto isNamed = [&](const std::wstring& key) {
          return machine.Registry().Text(key, L"PortName") == name;
        };
        const bool hasName = isNamed(ParametersKeyOf(port->instanceId)) || isNamed(BackupKeyOf(*port));
        if (hasName && KeepsSettings(machine, *port)) continue;
        lost += (hasName ? " settings at " : " name at ") + std::to_string(calls) + " " + function + ",";
      }
    });
    installer.Install(*rig.server.card);
    FindPortsAgain(machine, rig.server, {.comNumbers = {27, 28}});
    for (Device* port : rig.server.ports) installer.Install(*port);
    machine.Calls().AtEachCall(nullptr);
    std::printf("    reinstallation, behind it %s: %zu calls\n", past, calls);
    EXPECT_EQ(lost, "");
    for (const Device* port : rig.server.ports) {
      EXPECT_TRUE(HasSettings(machine, *port) && PlacesOf(machine, *port).Agree());
      const bool first = std::string_view(past) == "nothing";
      EXPECT_EQ(machine.Registry().HasKey(BackupKeyOf(*port)), !first);
      machine.Registry().SetDword(ParametersKeyOf(port->instanceId) + L"\\UI1", L"Shown", 3);
      for (const PortSetting& setting : kPortSettings) {
        if (!first) machine.Registry().SetDword(BackupKeyOf(*port), setting.name, setting.value + 1);
      }
    }
  }
}

}  // namespace
}  // namespace workbench
