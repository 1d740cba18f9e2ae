// Installation and management programs.
#include "tests/faults/fault_scenarios.h"

#include <algorithm>

#include "tests/faults/reinstallation.h"

namespace workbench {
namespace {

void BuildServer(World& world, std::vector<unsigned> comNumbers, bool pages = true) {
  world.server = AddServerInUse(world.machine,
                                {.comNumbers = std::move(comNumbers),
                                 .driver = [&world](unsigned index) { return &world.drivers.at(index); }},
                                pages);
}

bool ServerSettingsKept(World& world) {
  return std::ranges::all_of(world.server.ports,
                             [&](const Device* port) { return KeepsSettings(world.machine, *port); });
}

DWORD Call(World& world, Dll& dll, Device& device, DI_FUNCTION function, bool post) {
  COINSTALLER_CONTEXT_DATA context{};
  context.PostProcessing = post ? TRUE : FALSE;
  context.InstallResult = post ? kInstallResult : NO_ERROR;
  return DeviceInstaller(world.machine, dll).Call(device, function, context);
}

std::wstring NameOf(World& world, const Device& port) {
  return PlacesOf(world.machine, port).portName;
}

// -- the device server

void BuildTwoPorts(World& world) {
  BuildServer(world, {7, 8});
}

bool RunReinstallation(World& world, Dll& dll, Trouble trouble) {
  DeviceInstaller installer(world.machine, dll);
  const ServerSpec wanted{.comNumbers = {27, 28}};  // other names than before
  const auto results = Reinstall(world.machine, installer, world.server, wanted);
  const bool stated = std::ranges::all_of(results, [&](const InstallResults& one) {
    const bool noMemory = trouble == Trouble::Memory && one.before == NO_ERROR;
    return (one.before == ERROR_DI_POSTPROCESSING_REQUIRED || noMemory) &&
           (one.after == kInstallResult || one.after == NO_ERROR);
  });
  if (trouble != Trouble::None) return stated;
  return stated && NameOf(world, *world.server.ports[0]) == L"COM7" &&
         std::ranges::all_of(world.server.ports, [&](const Device* port) {
           return HasSettings(world.machine, *port) && PlacesOf(world.machine, *port).Agree();
         });
}

void BuildUninstall(World& world) {
  BuildServer(world, {7});
  const std::wstring key = ParametersKeyOf(world.server.card->instanceId);
  world.machine.Registry().SetText(key, L"UnInstall", L"kdremove.exe");
  world.machine.Registry().SetText(key, L"NoUpgrade", L"1");
}

bool RunCardRemove(World& world, Dll& dll, Trouble trouble) {
  const DWORD removed = Call(world, dll, *world.server.card, DIF_REMOVE, false);
  return removed == NO_ERROR && (trouble != Trouble::None || world.machine.System().processes.size() == 1);
}

bool RunUpdateRefusal(World& world, Dll& dll, Trouble trouble) {
  const DWORD answer = Call(world, dll, *world.server.card, DIF_UPDATEDRIVER_UI, false);
  return answer == ERROR_DI_DONT_INSTALL || (trouble != Trouble::None && answer == NO_ERROR);
}

// -- ports

// Without values of the pages, so that the backup is deleted when it was restored.
void BuildBackup(World& world) {
  BuildServer(world, {7}, false);
  const Device& port = *world.server.ports[0];
  const std::wstring backup = BackupKeyOf(*world.server.card, port);
  for (const PortSetting& setting : kPortSettings) {
    world.machine.Registry().DeleteValue(ParametersKeyOf(port.instanceId), setting.name);
    world.machine.Registry().SetDword(backup, setting.name, setting.value);
  }
  world.machine.Registry().SetText(backup, L"PortName", L"COM12");
}

bool InstallPort(World& world, Dll& dll, Device& port, Trouble trouble, const wchar_t* name) {
  const DWORD result = Call(world, dll, port, DIF_INSTALLDEVICE, true);
  if (trouble != Trouble::None) return result == kInstallResult || result == NO_ERROR;
  return result == kInstallResult && NameOf(world, port) == name;
}

bool RunRestore(World& world, Dll& dll, Trouble trouble) {
  return InstallPort(world, dll, *world.server.ports[0], trouble, L"COM12");
}

void BuildUnsorted(World& world) {
  BuildServer(world, {7, 5, 6});
}

bool RunSort(World& world, Dll& dll, Trouble trouble) {
  return InstallPort(world, dll, *world.server.ports[0], trouble, L"COM5");
}

void BuildUsb(World& world) {
  AddForeignPort(world.machine, 4);
  world.usb = AddUsbDevice(world.machine, {.hardwareId = L"USB\\VID_3A7E&PID_5002&MI_01", .comNumber = 9});
}

bool RunUsb(World& world, Dll& dll, Trouble trouble) {
  return InstallPort(world, dll, *world.usb.port, trouble, L"COM4");
}

bool RunPortRemove(World& world, Dll& dll, Trouble trouble) {
  if (Call(world, dll, *world.server.ports[0], DIF_REMOVE, false) != NO_ERROR) return false;
  return trouble != Trouble::None || !world.machine.ComNames().IsClaimed(7);
}

// -- management programs

bool RunRename(World& world, Dll& dll, Trouble trouble) {
  const BOOL done = dll.ChangeComNumber(world.server.ports[0]->instanceId.c_str(), L"COM20");
  if (trouble != Trouble::None) return done == TRUE || done == FALSE;
  return done == TRUE && NameOf(world, *world.server.ports[0]) == L"COM20";
}

// What an update answers is the truth. Only where memory runs out behind the last write, all is written and
// the export fails all the same.
bool TellsTheTruth(BOOL done, bool written, Trouble trouble) {
  if (trouble == Trouble::None) return done == TRUE && written;
  if (trouble == Trouble::Memory && done == FALSE) return true;
  return done == (written ? TRUE : FALSE);
}

bool RunSettingsUpdate(World& world, Dll& dll, Trouble trouble) {
  const BOOL done =
      dll.NPortSettingsUpdate(world.server.ports[0]->instanceId.c_str(), nullptr, 57600, 3, 1, 0, 4);
  return TellsTheTruth(done, world.drivers[0].Current(kPortSet).Number("Baudrate") == 57600, trouble);
}

bool RunNetworkUpdate(World& world, Dll& dll, Trouble trouble) {
  world.server.ports[0]->port->openElsewhere = true;  // so that the device is restarted
  const BOOL done = dll.NPortNetworkInfoUpdate(world.server.ports[0]->instanceId.c_str(), nullptr, 0x0A000001,
                                               966, 0, 4001, 80, 1, 2, 1, 1);
  PortDriver& driver = world.drivers[0];
  const bool written = driver.Current(kBusSet).Number("AddressToConnect") == 0x0A000001 &&
                       driver.Current(kPortSet).Number("DuplexMode") == 1;
  return TellsTheTruth(done, written, trouble);
}

bool RunDriverUpdate(World&, Dll& dll, Trouble trouble) {
  const BOOL done = dll.UpdateDriver(L"ROOT\\VELTRANET", L"C:\\drivers\\kdnui.inf");
  return done == TRUE || (trouble != Trouble::None && done == FALSE);
}

bool RunRegistration(World&, Dll& dll, Trouble trouble) {
  const HRESULT registered = dll.RegisterServer();
  const HRESULT removed = dll.UnregisterServer();
  return trouble != Trouble::None || (registered == S_OK && removed == S_OK);
}

constexpr Scenario kScenarios[] = {
    // A value that cannot be copied is not in the backup, and the port is removed all the same.
    {"reinstall a device server", BuildTwoPorts, RunReinstallation, ServerSettingsKept,
     "CM_Get_Child CM_Get_Sibling CM_Get_Device_ID_Size CM_Get_Device_IDW SetupDiOpenDevRegKey "
     "RegCreateKeyExW RegOpenKeyExW RegEnumValueW RegQueryValueExW RegSetValueExW"},
    {"remove a device server", BuildUninstall, RunCardRemove, ServerSettingsKept},
    {"refuse a driver update", BuildUninstall, RunUpdateRefusal, ServerSettingsKept},
    // The backup is deleted whatever became of its values.
    {"restore a port", BuildBackup, RunRestore, ServerSettingsKept,
     "RegEnumValueW RegQueryValueExW RegSetValueExW"},
    {"sort the ports of a server", BuildUnsorted, RunSort, ServerSettingsKept},
    {"give a USB port its fixed name", BuildUsb, RunUsb, NothingToKeep},
    {.name = "remove a port",
     .build = BuildTwoPorts,
     .run = RunPortRemove,
     .kept = ServerSettingsKept,
     .takesNamesAway = true},
    {"rename a port", BuildTwoPorts, RunRename, ServerSettingsKept},
    {"update a port's settings", BuildTwoPorts, RunSettingsUpdate, ServerSettingsKept},
    {"update a port's network settings", BuildTwoPorts, RunNetworkUpdate, ServerSettingsKept},
    {"update a driver", BuildTwoPorts, RunDriverUpdate, ServerSettingsKept},
    {"register and unregister", BuildTwoPorts, RunRegistration, ServerSettingsKept},
};

}  // namespace

std::span<const Scenario> ProgramScenarios() {
  return kScenarios;
}

}  // namespace workbench
