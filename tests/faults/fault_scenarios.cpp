#include "tests/faults/fault_scenarios.h"

#include <algorithm>

namespace workbench {
namespace {

constexpr std::uint32_t kBaudrate = 115200;
constexpr wchar_t kBackupOfFirstPort[] = L"KDNBUS_T_1&2F8C1D3A&0&01";

std::function<DriverEndpoint*(unsigned)> DriversOf(World& world) {
  return [&world](unsigned index) { return index < world.drivers.size() ? &world.drivers[index] : nullptr; };
}

void BuildServer(World& world, std::vector<unsigned> comNumbers) {
  world.server =
      AddDeviceServer(world.machine, {.comNumbers = std::move(comNumbers), .driver = DriversOf(world)});
  for (const Device* port : world.server.ports) {
    const std::wstring key = ParametersKeyOf(port->instanceId);
    world.machine.Registry().SetDword(key, L"Baudrate", kBaudrate);
    world.machine.Registry().SetDword(key, L"CtsSupported", 1);
    world.machine.Registry().SetDword(key + L"\\UI1", L"Shown", 3);
  }
}

// The setting is in the port's key or in one of the backups below its device server.
bool HasSetting(World& world, const Device& port) {
  const RegistrySandbox& registry = world.machine.Registry();
  if (registry.Dword(ParametersKeyOf(port.instanceId), L"Baudrate") == kBaudrate) return true;
  const std::wstring server = ParametersKeyOf(world.server.card->instanceId);
  const std::wstring last = port.instanceId.substr(port.instanceId.rfind(L'\\') + 1);
  return std::ranges::any_of(registry.KeyNames(server), [&](const std::wstring& name) {
    return name.ends_with(last) && registry.Dword(server + L"\\" + name, L"Baudrate") == kBaudrate;
  });
}

bool ServerSettingsKept(World& world) {
  return std::ranges::all_of(world.server.ports,
                             [&](const Device* port) { return HasSetting(world, *port); });
}

bool NothingToKeep(World&) {
  return true;
}

// What an update does not name is as it was; what it names is old or new.
bool OtherSettingsKept(World& world) {
  static constexpr std::string_view kUpdated[] = {
      "Baudrate",      "Databits",    "Parity",           "Stopbits",   "FlowControl",
      "DuplexMode",    "PortType",    "AddressToConnect", "PortNumber", "ServerConfigPort",
      "ServerWebPort", "MACAddress1", "MACAddress2"};
  PortDriver& driver = world.drivers[0];
  for (const std::uint32_t selector : {kPortSet, kBusSet}) {
    const ParameterValues initial(selector);
    for (const Parameter& parameter : SetLayout(selector)) {
      if (parameter.isText || std::ranges::find(kUpdated, parameter.name) != std::end(kUpdated)) continue;
      if (driver.Current(selector).Number(parameter.name) != initial.Number(parameter.name)) return false;
    }
  }
  return true;
}

DWORD Install(Dll::CoInstaller coInstaller, World& world, Device& device, DI_FUNCTION function, bool post) {
  DeviceElement element(world.machine, device);
  COINSTALLER_CONTEXT_DATA context{};
  context.PostProcessing = post ? TRUE : FALSE;
  return coInstaller(function, element.Set(), element.Data(), &context);
}

// -- the device server

void BuildTwoPorts(World& world) {
  BuildServer(world, {7, 8});
}

bool RunCardInstall(World& world, Dll& dll, bool) {
  const DWORD before = Install(dll.CoInstallCard, world, *world.server.card, DIF_INSTALLDEVICE, false);
  const DWORD after = Install(dll.CoInstallCard, world, *world.server.card, DIF_INSTALLDEVICE, true);
  return before == ERROR_DI_POSTPROCESSING_REQUIRED && after == NO_ERROR;
}

void BuildUninstall(World& world) {
  BuildServer(world, {7});
  const std::wstring key = ParametersKeyOf(world.server.card->instanceId);
  world.machine.Registry().SetText(key, L"UnInstall", L"kdremove.exe");
  world.machine.Registry().SetText(key, L"NoUpgrade", L"1");
}

bool RunCardRemove(World& world, Dll& dll, bool undisturbed) {
  const DWORD removed = Install(dll.CoInstallCard, world, *world.server.card, DIF_REMOVE, false);
  return removed == NO_ERROR && (!undisturbed || world.machine.System().processes.size() == 1);
}

bool RunUpdateRefusal(World& world, Dll& dll, bool undisturbed) {
  const DWORD answer = Install(dll.CoInstallCard, world, *world.server.card, DIF_UPDATEDRIVER_UI, false);
  return answer == ERROR_DI_DONT_INSTALL || (!undisturbed && answer == NO_ERROR);
}

// -- ports

void BuildBackup(World& world) {
  BuildServer(world, {7});
  const std::wstring port = ParametersKeyOf(world.server.ports[0]->instanceId);
  const std::wstring backup = ParametersKeyOf(world.server.card->instanceId) + L"\\" + kBackupOfFirstPort;
  RegistrySandbox& registry = world.machine.Registry();
  registry.DeleteValue(port, L"Baudrate");
  registry.DeleteKey(port + L"\\UI1");
  registry.SetDword(backup, L"Baudrate", kBaudrate);
  registry.SetText(backup, L"PortName", L"COM12");
}

bool RunPortInstall(World& world, Dll& dll, bool) {
  return Install(dll.CoInstallPort, world, *world.server.ports[0], DIF_INSTALLDEVICE, true) == NO_ERROR;
}

void BuildUnsorted(World& world) {
  BuildServer(world, {7, 5, 6});
}

bool RunSort(World& world, Dll& dll, bool undisturbed) {
  if (!RunPortInstall(world, dll, undisturbed)) return false;
  return !undisturbed || PlacesOf(world.machine, *world.server.ports[0]).portName == L"COM5";
}

void BuildUsb(World& world) {
  AddForeignPort(world.machine, 4);
  world.usb = AddUsbDevice(world.machine, {.hardwareId = L"USB\\VID_3A7E&PID_5002&MI_01", .comNumber = 9});
}

bool RunUsb(World& world, Dll& dll, bool undisturbed) {
  if (Install(dll.CoInstallPort, world, *world.usb.port, DIF_INSTALLDEVICE, true) != NO_ERROR) return false;
  return !undisturbed || PlacesOf(world.machine, *world.usb.port).portName == L"COM4";
}

bool RunPortRemove(World& world, Dll& dll, bool undisturbed) {
  if (Install(dll.CoInstallPort, world, *world.server.ports[0], DIF_REMOVE, false) != NO_ERROR) return false;
  return !undisturbed || !world.machine.ComNames().IsClaimed(7);
}

// -- management programs

bool RunRename(World& world, Dll& dll, bool undisturbed) {
  const BOOL done = dll.ChangeComNumber(world.server.ports[0]->instanceId.c_str(), L"COM20");
  if (!undisturbed) return done == TRUE || done == FALSE;
  return done == TRUE && PlacesOf(world.machine, *world.server.ports[0]).Agree();
}

bool RunSettingsUpdate(World& world, Dll& dll, bool undisturbed) {
  const BOOL done =
      dll.NPortSettingsUpdate(world.server.ports[0]->instanceId.c_str(), nullptr, 57600, 3, 1, 0, 4);
  const bool written = world.drivers[0].Current(kPortSet).Number("Baudrate") == 57600;
  return (done == TRUE && written) || (!undisturbed && done == FALSE);
}

bool RunNetworkUpdate(World& world, Dll& dll, bool undisturbed) {
  world.server.ports[0]->port->openElsewhere = true;  // so that the device is restarted
  const BOOL done = dll.NPortNetworkInfoUpdate(world.server.ports[0]->instanceId.c_str(), nullptr, 0x0A000001,
                                               966, 0, 4001, 80, 1, 2, 1, 1);
  const bool written = world.drivers[0].Current(kBusSet).Number("AddressToConnect") == 0x0A000001;
  return (done == TRUE && written) || (!undisturbed && done == FALSE);
}

bool RunDriverUpdate(World&, Dll& dll, bool undisturbed) {
  const BOOL done = dll.UpdateDriver(L"ROOT\\VELTRANET", L"C:\\drivers\\kdnui.inf");
  return done == TRUE || (!undisturbed && done == FALSE);
}

bool RunRegistration(World&, Dll& dll, bool undisturbed) {
  const HRESULT registered = dll.RegisterServer();
  const HRESULT removed = dll.UnregisterServer();
  return !undisturbed || (registered == S_OK && removed == S_OK);
}

constexpr Scenario kScenarios[] = {
    // A value that cannot be copied is not in the backup, and the port is removed all the same.
    {"reinstall a device server", BuildTwoPorts, RunCardInstall, ServerSettingsKept,
     "CM_Get_Child CM_Get_Sibling CM_Get_Device_ID_Size CM_Get_Device_IDW SetupDiOpenDevRegKey "
     "RegCreateKeyExW "
     "RegOpenKeyExW RegEnumValueW RegQueryValueExW RegSetValueExW"},
    {"remove a device server", BuildUninstall, RunCardRemove, ServerSettingsKept},
    {"refuse a driver update", BuildUninstall, RunUpdateRefusal, ServerSettingsKept},
    // The backup is deleted whatever became of its values.
    {"restore a port", BuildBackup, RunPortInstall, ServerSettingsKept,
     "RegEnumValueW RegQueryValueExW RegSetValueExW"},
    {"sort the ports of a server", BuildUnsorted, RunSort, ServerSettingsKept},
    {"give a USB port its fixed name", BuildUsb, RunUsb, NothingToKeep},
    {"remove a port", BuildTwoPorts, RunPortRemove, ServerSettingsKept},
    {"rename a port", BuildTwoPorts, RunRename, ServerSettingsKept},
    {"update a port's settings", BuildTwoPorts, RunSettingsUpdate, OtherSettingsKept},
    {"update a port's network settings", BuildTwoPorts, RunNetworkUpdate, OtherSettingsKept},
    {"update a driver", BuildTwoPorts, RunDriverUpdate, ServerSettingsKept},
    {"register and unregister", BuildTwoPorts, RunRegistration, ServerSettingsKept},
};

}  // namespace

std::span<const Scenario> Scenarios() {
  return kScenarios;
}

}  // namespace workbench
