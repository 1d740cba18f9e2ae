#include "tests/faults/fault_scenarios.h"

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

void BuildServer(ScenarioRig& rig, const std::vector<unsigned>& comNumbers, bool pages = true) {
  SetSettings(rig.machine, rig.AddServer(comNumbers), pages);
}

DWORD Call(ScenarioRig& rig, Device& device, DI_FUNCTION function, bool post) {
  COINSTALLER_CONTEXT_DATA context{};
  context.PostProcessing = post ? TRUE : FALSE;
  context.InstallResult = post ? kInstallResult : NO_ERROR;
  return rig.Installer().Call(device, function, context);
}

// -- the device server

bool RunReinstallation(ScenarioRig& rig, Trouble trouble) {
  const auto install = [&](Device& device) {
    const DWORD before = Call(rig, device, DIF_INSTALLDEVICE, false);
    if (before == NO_ERROR) return trouble == Trouble::Memory;
    const DWORD after = Call(rig, device, DIF_INSTALLDEVICE, true);
    return before == ERROR_DI_POSTPROCESSING_REQUIRED && (after == kInstallResult || after == NO_ERROR);
  };
  bool stated = install(*rig.server.card);
  FindPortsAgain(rig.machine, rig.server, {.comNumbers = {27, 28}});  // other names than before
  for (Device* port : rig.server.ports) stated = install(*port) && stated;
  if (trouble != Trouble::None) return stated;
  return stated && rig.NameOf(*rig.server.ports[0]) == L"COM7" &&
         std::ranges::all_of(rig.server.ports, [&](const Device* port) {
           return HasSettings(rig.machine, *port) && PlacesOf(rig.machine, *port).Agree();
         });
}

void BuildUninstall(ScenarioRig& rig) {
  BuildServer(rig, {7});
  const std::wstring key = ParametersKeyOf(rig.server.card->instanceId);
  rig.machine.Registry().SetText(key, L"UnInstall", L"kdremove.exe");
  rig.machine.Registry().SetText(key, L"NoUpgrade", L"1");
}

bool RunCardRemove(ScenarioRig& rig, Trouble trouble) {
  const DWORD removed = Call(rig, *rig.server.card, DIF_REMOVE, false);
  return removed == NO_ERROR && (trouble != Trouble::None || rig.machine.System().processes.size() == 1);
}

bool RunUpdateRefusal(ScenarioRig& rig, Trouble trouble) {
  const DWORD answer = Call(rig, *rig.server.card, DIF_UPDATEDRIVER_UI, false);
  return answer == ERROR_DI_DONT_INSTALL || (trouble != Trouble::None && answer == NO_ERROR);
}

// -- ports

// Without values of the pages, so that the backup is deleted when it was restored.
void BuildBackup(ScenarioRig& rig) {
  BuildServer(rig, {7}, false);
  const Device& port = *rig.server.ports[0];
  const std::wstring backup = BackupKeyOf(port);
  for (const PortSetting& setting : kPortSettings) {
    rig.machine.Registry().DeleteValue(ParametersKeyOf(port.instanceId), setting.name);
    rig.machine.Registry().SetDword(backup, setting.name, setting.value);
  }
  rig.machine.Registry().SetText(backup, L"PortName", L"COM12");
}

template <unsigned Number>
bool RunInstallation(ScenarioRig& rig, Trouble trouble) {
  Device& port = rig.usb.port != nullptr ? *rig.usb.port : *rig.server.ports[0];
  const DWORD result = Call(rig, port, DIF_INSTALLDEVICE, true);
  if (trouble != Trouble::None) return result == kInstallResult || result == NO_ERROR;
  return result == kInstallResult && rig.NameOf(port) == L"COM" + std::to_wstring(Number);
}

void BuildUsb(ScenarioRig& rig) {
  AddForeignPort(rig.machine, 4);
  rig.usb = AddUsbDevice(rig.machine, {.hardwareId = L"USB\\VID_3A7E&PID_5002&MI_01", .comNumber = 9});
}

bool RunPortRemove(ScenarioRig& rig, Trouble trouble) {
  if (Call(rig, *rig.server.ports[0], DIF_REMOVE, false) != NO_ERROR) return false;
  return trouble != Trouble::None || !rig.machine.ComNames().IsClaimed(7);
}

// -- management programs

bool RunRename(ScenarioRig& rig, Trouble trouble) {
  const BOOL done = rig.dll->ChangeComNumber(rig.server.ports[0]->instanceId.c_str(), L"COM20");
  if (trouble != Trouble::None) return done == TRUE || done == FALSE;
  return done == TRUE && rig.NameOf(*rig.server.ports[0]) == L"COM20";
}

// What an update answers is the truth. Only where memory runs out behind the last write, all is written and
// the export fails all the same.
bool TellsTheTruth(KdUpdateResult done, bool written, Trouble trouble) {
  if (trouble == Trouble::Memory && done == 0) return true;
  return done == (written ? 1u : 0u) && (written || trouble != Trouble::None);
}

bool RunSettingsUpdate(ScenarioRig& rig, Trouble trouble) {
  const KdUpdateResult done =
      rig.dll->NPortSettingsUpdate(rig.server.ports[0]->instanceId.c_str(), nullptr, 57600, 3, 1, 0, 4);
  return TellsTheTruth(done, rig.drivers[0].Current(kPortSet).Number("Baudrate") == 57600, trouble);
}

bool RunNetworkUpdate(ScenarioRig& rig, Trouble trouble) {
  rig.server.ports[0]->port->openElsewhere = true;  // so that the device is restarted
  const KdUpdateResult done = rig.dll->NPortNetworkInfoUpdate(
      rig.server.ports[0]->instanceId.c_str(), nullptr, 0x0A000001, 966, 0, 4001, 80, 1, 2, 1, 1);
  PortDriver& driver = rig.drivers[0];
  const bool written = driver.Current(kBusSet).Number("AddressToConnect") == 0x0A000001 &&
                       driver.Current(kPortSet).Number("DuplexMode") == 1;
  return TellsTheTruth(done, written, trouble);
}

bool RunDriverUpdate(ScenarioRig& rig, Trouble trouble) {
  const BOOL done = rig.dll->UpdateDriver(L"ROOT\\VELTRANET", L"C:\\drivers\\kdnui.inf");
  return done == TRUE || (trouble != Trouble::None && done == FALSE);
}

bool RunRegistration(ScenarioRig& rig, Trouble trouble) {
  const HRESULT registered = rig.dll->RegisterServer();
  const HRESULT removed = rig.dll->UnregisterServer();
  return trouble != Trouble::None || (registered == S_OK && removed == S_OK);
}

// -- the pages, opened by a host's property sheet and driven by messages

constexpr std::uint32_t kTcpPort = 4002;

void BuildPage(ScenarioRig& rig) {
  rig.StartWeb();
  rig.AddServer({7});
  rig.web.SetPort(1, {.baudRate = 19200});
}

void StartWithSheet(ScenarioRig& rig) {
  rig.sheet.emplace(rig, rig.Port(), SheetLook{.painting = Painting::WhenUncovered});
}

void CloseSheetOf(ScenarioRig& rig) {
  rig.sheet.reset();
  PumpMessages();
}

bool RunOpen(ScenarioRig& rig, Trouble trouble) {
  try {
    rig.sheet.emplace(rig);
  } catch (const std::runtime_error&) {
    return trouble != Trouble::None;
  }
  const std::wstring baud = rig.sheet->Text(IDC_PORT_BAUD_RATE);
  CloseSheetOf(rig);
  return trouble != Trouble::None || baud == L"19200";
}

bool RunApply(ScenarioRig& rig, Trouble trouble) {
  rig.sheet->Check(IDC_PORT_CTS_ALWAYS_TRUE, true);
  const bool closed = rig.sheet->PressOk();
  CloseSheetOf(rig);
  if (trouble != Trouble::None) return true;
  return closed && rig.drivers[0].Current(kPortSet).Number("EmulateCTSTrue") == 1 &&
         rig.machine.Registry().Text(kPortsKey, L"COM7:").value_or(L"").starts_with(L"19200,");
}

bool RunAdvancedApply(ScenarioRig& rig, Trouble trouble) {
  const auto change = [](const OpenSheet& sheet) {
    Click(sheet.Turn(OpenSheet::kDevice), IDC_DEVICE_HIGH_PERFORMANCE);
    Enter(sheet.Turn(OpenSheet::kTcpIp), IDC_TCPIP_PORT_NUMBER, std::to_wstring(kTcpPort));
    sheet.Turn(OpenSheet::kAbout);
    sheet.PressOk();
  };
  ParameterValues& bus = rig.drivers[0].Current(kBusSet);
  const std::uint32_t emulation = bus.Number("RealTxFifoEmulation");
  {
    const SheetVisit visit(change);
    rig.sheet->Click(IDC_PORT_ADVANCED);
  }
  CloseSheetOf(rig);
  if (trouble != Trouble::None) return true;
  return bus.Number("PortNumber") == kTcpPort && bus.Number("RealTxFifoEmulation") != emulation;
}

template <unsigned... Numbers>
void BuildPorts(ScenarioRig& rig) {
  BuildServer(rig, {Numbers...});
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
