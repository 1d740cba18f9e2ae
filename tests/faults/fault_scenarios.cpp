#include "tests/faults/fault_scenarios.h"
#include "tests/dll/port_page_rig.h"

#include <algorithm>
#include <stdexcept>

#include "base/resource_ids.h"
#include "tests/faults/port_settings.h"
#include "workbench/rig/device_installer.h"
#include "workbench/rig/page_controls.h"
#include "workbench/rig/sheet_visit.h"

namespace workbench {
namespace {

// What the class installer answers, and a co-installer has to pass on.
constexpr DWORD kInstallResult = 1234;

void BuildServer(World& world, std::vector<unsigned> comNumbers, bool pages = true) {
  world.server = AddServerInUse(world.machine,
                                {.comNumbers = std::move(comNumbers),
                                 .driver = [&world](unsigned index) { return &world.drivers.at(index); }},
                                pages);
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

bool RunReinstallation(World& world, Dll& dll, Trouble trouble) {
  const auto install = [&](Device& device) {
    const DWORD before = Call(world, dll, device, DIF_INSTALLDEVICE, false);
    if (before == NO_ERROR) return trouble == Trouble::Memory;
    const DWORD after = Call(world, dll, device, DIF_INSTALLDEVICE, true);
    return before == ERROR_DI_POSTPROCESSING_REQUIRED && (after == kInstallResult || after == NO_ERROR);
  };
  bool stated = install(*world.server.card);
  FindPortsAgain(world.machine, world.server, {.comNumbers = {27, 28}});  // other names than before
  for (Device* port : world.server.ports) stated = install(*port) && stated;
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
  const std::wstring backup = BackupKeyOf(port);
  for (const PortSetting& setting : kPortSettings) {
    world.machine.Registry().DeleteValue(ParametersKeyOf(port.instanceId), setting.name);
    world.machine.Registry().SetDword(backup, setting.name, setting.value);
  }
  world.machine.Registry().SetText(backup, L"PortName", L"COM12");
}

template <unsigned Number>
bool RunInstallation(World& world, Dll& dll, Trouble trouble) {
  Device& port = world.usb.port != nullptr ? *world.usb.port : *world.server.ports[0];
  const DWORD result = Call(world, dll, port, DIF_INSTALLDEVICE, true);
  if (trouble != Trouble::None) return result == kInstallResult || result == NO_ERROR;
  return result == kInstallResult && NameOf(world, port) == L"COM" + std::to_wstring(Number);
}

void BuildUsb(World& world) {
  AddForeignPort(world.machine, 4);
  world.usb = AddUsbDevice(world.machine, {.hardwareId = L"USB\\VID_3A7E&PID_5002&MI_01", .comNumber = 9});
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

// -- the pages, opened by a host's property sheet and driven by messages

constexpr std::uint32_t kTcpPort = 4002;

// One device server serves all runs.
HttpDeviceServer& Web() {
  static HttpDeviceServer web;
  if (web.Port() == 0) {
    web.SetPort(1, {.baudRate = 19200});
    web.Start();
  }
  web.ClearRequests();
  return web;
}

void BuildPage(World& world) {
  PointAt(world.drivers[0], Web(), 1);
  ParameterValues& port = world.drivers[0].Current(kPortSet);
  for (const char* line : {"CtsSupported", "DsrSupported"}) port.SetNumber(line, 1);
  world.server = AddDeviceServer(world.machine, {.comNumbers = {7}, .driver = [&world](unsigned index) {
                                                   return &world.drivers.at(index);
                                                 }});
}

void StartWithSheet(World& world, Dll& dll) {
  world.sheet =
      std::make_shared<PortSheet>(world.machine, dll, *world.server.ports[0], Painting::WhenUncovered);
}

void CloseSheetOf(World& world) {
  world.sheet.reset();
  PumpMessages();
}

bool RunOpen(World& world, Dll& dll, Trouble trouble) {
  try {
    world.sheet = std::make_shared<PortSheet>(world.machine, dll, *world.server.ports[0]);
  } catch (const std::runtime_error&) {
    return trouble != Trouble::None;
  }
  const std::wstring baud = world.sheet->Text(IDC_PORT_BAUD_RATE);
  CloseSheetOf(world);
  return trouble != Trouble::None || baud == L"19200";
}

bool RunApply(World& world, Dll&, Trouble trouble) {
  world.sheet->Check(IDC_PORT_CTS_ALWAYS_TRUE, true);
  const bool closed = world.sheet->PressOk();
  CloseSheetOf(world);
  if (trouble != Trouble::None) return true;
  return closed && world.drivers[0].Current(kPortSet).Number("EmulateCTSTrue") == 1 &&
         world.machine.Registry().Text(kPortsKey, L"COM7:").value_or(L"").starts_with(L"19200,");
}

bool RunAdvancedApply(World& world, Dll&, Trouble trouble) {
  const auto change = [](const OpenSheet& sheet) {
    Click(sheet.Turn(OpenSheet::kDevice), IDC_DEVICE_HIGH_PERFORMANCE);
    Enter(sheet.Turn(OpenSheet::kTcpIp), IDC_TCPIP_PORT_NUMBER, std::to_wstring(kTcpPort));
    sheet.Turn(OpenSheet::kAbout);
    sheet.PressOk();
  };
  ParameterValues& bus = world.drivers[0].Current(kBusSet);
  const std::uint32_t emulation = bus.Number("RealTxFifoEmulation");
  {
    const SheetVisit visit(change);
    world.sheet->Click(IDC_PORT_ADVANCED);
  }
  CloseSheetOf(world);
  if (trouble != Trouble::None) return true;
  return bus.Number("PortNumber") == kTcpPort && bus.Number("RealTxFifoEmulation") != emulation;
}

template <unsigned... Numbers>
void BuildPorts(World& world) {
  BuildServer(world, {Numbers...});
}

}  // namespace

std::vector<Scenario> Scenarios() {
  return {
      // A value that cannot be copied is not in the backup, and the port is removed all the same.
      {.name = "reinstall a device server",
       .build = BuildPorts<7, 8>,
       .run = RunReinstallation,
       .givesUp = "CM_Get_Child CM_Get_Sibling CM_Get_Device_ID_Size CM_Get_Device_IDW SetupDiOpenDevRegKey "
                  "RegCreateKeyExW RegOpenKeyExW RegEnumValueW RegQueryValueExW RegSetValueExW"},
      {"remove a device server", BuildUninstall, RunCardRemove},
      {"refuse a driver update", BuildUninstall, RunUpdateRefusal},
      // The backup is deleted whatever became of its values.
      {.name = "restore a port",
       .build = BuildBackup,
       .run = RunInstallation<12>,
       .givesUp = "RegEnumValueW RegQueryValueExW RegSetValueExW"},
      {"sort the ports of a server", BuildPorts<7, 5, 6>, RunInstallation<5>},
      {"give a USB port its fixed name", BuildUsb, RunInstallation<4>},
      {.name = "remove a port", .build = BuildPorts<7, 8>, .run = RunPortRemove, .takesNamesAway = true},
      {"rename a port", BuildPorts<7, 8>, RunRename},
      {"update a port's settings", BuildPorts<7, 8>, RunSettingsUpdate},
      {"update a port's network settings", BuildPorts<7, 8>, RunNetworkUpdate},
      {"update a driver", BuildPorts<7, 8>, RunDriverUpdate},
      {"register and unregister", BuildPorts<7, 8>, RunRegistration},
      {.name = "open a port's page",
       .build = BuildPage,
       .run = RunOpen,
       .hasSettings = false,
       .hasWindows = true},
      {.name = "apply a port's page",
       .build = BuildPage,
       .run = RunApply,
       .hasSettings = false,
       .hasWindows = true,
       .start = StartWithSheet},
      // A box that cannot be set shows the other state, and what the boxes show is what OK writes.
      {.name = "apply the advanced settings",
       .build = BuildPage,
       .run = RunAdvancedApply,
       .hasSettings = false,
       .givesUp = "CheckDlgButton",
       .hasWindows = true,
       .start = StartWithSheet},
  };
}

}  // namespace workbench
