// The pages, opened by a host's property sheet and driven by messages.
#include "tests/dll/port_page_rig.h"  // before windows.h

#include <stdexcept>

#include "base/resource_ids.h"
#include "tests/faults/fault_scenarios.h"
#include "workbench/host/page_controls.h"
#include "workbench/host/sheet_visit.h"

namespace workbench {
namespace {

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

void OpenSheetOf(World& world, Dll& dll, Painting painting) {
  world.sheet = std::make_shared<PortSheet>(world.machine, dll, *world.server.ports[0], painting);
}

void StartWithSheet(World& world, Dll& dll) {
  OpenSheetOf(world, dll, Painting::WhenUncovered);
}

void CloseSheetOf(World& world) {
  world.sheet.reset();
  PumpMessages();
}

bool RunOpen(World& world, Dll& dll, Trouble trouble) {
  try {
    OpenSheetOf(world, dll, Painting::Now);
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

constexpr Scenario kScenarios[] = {
    {.name = "open a port's page",
     .build = BuildPage,
     .run = RunOpen,
     .kept = NothingToKeep,
     .hasWindows = true},
    {.name = "apply a port's page",
     .build = BuildPage,
     .run = RunApply,
     .kept = NothingToKeep,
     .hasWindows = true,
     .start = StartWithSheet},
    // A box that cannot be set shows the other state, and what the boxes show is what OK writes.
    {.name = "apply the advanced settings",
     .build = BuildPage,
     .run = RunAdvancedApply,
     .kept = NothingToKeep,
     .givesUp = "CheckDlgButton",
     .hasWindows = true,
     .start = StartWithSheet},
};

}  // namespace

std::span<const Scenario> PageScenarios() {
  return kScenarios;
}

}  // namespace workbench
