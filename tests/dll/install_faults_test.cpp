// The scenarios of installation again, with every platform call and every allocation failed once: results as
// stated, no misuse, nothing left open, and no port that loses its DOS device on the way.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "workbench/machine/machine.h"
#include "workbench/stories/device_installer.h"

namespace {

using workbench::Device;
using workbench::HandleKind;

constexpr DWORD kInstallResult = 1234;

struct Rig {
  workbench::Machine machine;
  workbench::Dll dll{machine};
  workbench::DeviceInstaller installer{machine, dll};
  workbench::ServerSpec wanted;
  Device* device = nullptr;  // the one that the scenario is about

  workbench::DeviceServer AddServer(std::vector<unsigned> comNumbers) {
    wanted.comNumbers = std::move(comNumbers);
    return AddDeviceServer(machine, wanted);
  }
  DWORD Call(DI_FUNCTION function, bool post) {
    COINSTALLER_CONTEXT_DATA context{};
    context.PostProcessing = post ? TRUE : FALSE;
    context.InstallResult = post ? kInstallResult : NO_ERROR;
    return installer.Call(*device, function, context);
  }
};

struct Scenario {
  const char* name;
  void (*prepare)(Rig& rig);
  DWORD (*run)(Rig& rig);
  std::vector<DWORD> results;  // the allowed ones, the good one first
  bool removes = false;        // takes ports' names away
};

DWORD InstallPort(Rig& rig) {
  return rig.Call(DIF_INSTALLDEVICE, true);
}

const std::vector<Scenario>& Scenarios() {
  static const std::vector<Scenario> scenarios = {
      {"rename",
       [](Rig& rig) { rig.device = rig.AddServer({5}).ports[0]; },
       [](Rig& rig) {
         return static_cast<DWORD>(rig.dll.ChangeComNumber(rig.device->instanceId.c_str(), L"COM9"));
       },
       {1, 0}},
      {"card, first pass",
       [](Rig& rig) {
         const auto server = rig.AddServer({5, 6});
         rig.machine.Registry().SetDword(workbench::ParametersKeyOf(server.ports[0]->instanceId) + L"\\UI1",
                                         L"Help", 1);
         rig.device = server.card;
       },
       [](Rig& rig) { return rig.Call(DIF_INSTALLDEVICE, false); },
       {ERROR_DI_POSTPROCESSING_REQUIRED},
       true},
      {"card, removal",
       [](Rig& rig) {
         rig.device = rig.AddServer({}).card;
         rig.machine.Registry().SetText(workbench::ParametersKeyOf(rig.device->instanceId), L"UnInstall",
                                        L"KdUninst.exe");
       },
       [](Rig& rig) { return rig.Call(DIF_REMOVE, false); },
       {NO_ERROR}},
      {"new ports, sorted",
       [](Rig& rig) {
         rig.device = rig.AddServer({7, 5}).ports[0];
       },
       &InstallPort,
       {kInstallResult, NO_ERROR}},
      {"port with a backup",
       [](Rig& rig) {
         const auto server = rig.AddServer({8});
         const std::wstring backup =
             workbench::ParametersKeyOf(server.card->instanceId) + L"\\KDNBUS_T_1&2F8C1D3A&0&01";
         rig.machine.Registry().SetDword(backup, L"Baudrate", 300);
         rig.machine.Registry().SetText(backup, L"PortName", L"COM5");
         rig.machine.Registry().SetText(backup + L"\\UI1", L"Page", L"1");
         rig.device = server.ports[0];
       },
       &InstallPort,
       {kInstallResult, NO_ERROR}},
      {"USB port with a holder",
       [](Rig& rig) {
         AddForeignPort(rig.machine, 4);
         rig.device = AddUsbDevice(rig.machine, {.hardwareId = L"USB\\VID_3A7E&PID_5002&MI_01"}).port;
       },
       &InstallPort,
       {kInstallResult, NO_ERROR}},
  };
  return scenarios;
}

// An msports.dll without ComDBClose, which no Windows has, is the one fault that keeps a database open.
bool LacksComDbClose(workbench::Gate& calls) {
  return std::ranges::any_of(calls.CallsOf("GetProcAddress"), [](const workbench::Call& call) {
    return call.injected && call.Text(1) == L"ComDBClose";
  });
}

// Whether the port shares its name with another device, as it may after a question that was answered "No":
// only one of the two can have the DOS device then.
bool SharesItsName(Rig& rig, const Device& port) {
  const auto nameOf = [&](const Device& device) {
    return rig.machine.Registry().Text(workbench::ParametersKeyOf(device.instanceId), L"PortName");
  };
  const auto devices = rig.machine.Devices().All();
  return std::ranges::any_of(devices, [&](const Device* other) {
    return other != &port && other->port && nameOf(*other) == nameOf(port);
  });
}

// What must hold however the scenario went. The mutex and the uninstall process stay open on purpose;
// modules and the run time's own events are not the scenario's.
void ExpectSound(Rig& rig, const Scenario& scenario) {
  EXPECT_THAT(rig.machine.Calls().Violations(), testing::IsEmpty());
  for (const workbench::OpenHandle& open : rig.machine.Calls().OpenHandles()) {
    const bool meant = open.kind == HandleKind::Mutex || open.kind == HandleKind::Process ||
                       open.kind == HandleKind::Module || open.kind == HandleKind::Event ||
                       (open.kind == HandleKind::ComDatabase && LacksComDbClose(rig.machine.Calls()));
    EXPECT_TRUE(meant) << NameOf(open.kind) << " of " << open.function << " left open";
  }
  if (scenario.removes) return;
  for (const Device* device : rig.machine.Devices().All()) {
    if (!device->port || !device->started || SharesItsName(rig, *device)) continue;
    EXPECT_EQ(rig.machine.DosNames().NamesOf(device->port->kernelDevice).size(), 1u)
        << "a port without its DOS device, or with two";
  }
}

class InstallFaults : public testing::TestWithParam<std::size_t> {
 protected:
  // Runs the scenario once as it is, which tells how many faults there are to try, and then with each of
  // them, every time on a machine of its own.
  template <class Arm, class Count>
  void EveryFault(Arm arm, Count count) {
    const Scenario& scenario = Scenarios().at(GetParam());
    std::uint64_t total = 1;
    for (std::uint64_t k = 0; k <= total; ++k) {
      SCOPED_TRACE(testing::Message() << scenario.name << ", fault " << k << " of " << total);
      Rig rig;
      scenario.prepare(rig);
      rig.machine.Calls().ClearLog();
      if (k > 0) arm(rig.machine.Calls(), k);
      const DWORD result = scenario.run(rig);
      if (k == 0) {
        EXPECT_EQ(result, scenario.results.front());
        total = count(rig.machine.Calls());
        EXPECT_GT(total, 5u);
      }
      EXPECT_THAT(scenario.results, testing::Contains(result));
      rig.machine.Calls().ClearFaults();
      ExpectSound(rig, scenario);
      if (HasFailure()) {
        ADD_FAILURE() << rig.machine.Calls().LogText();
        break;
      }
    }
  }
};

TEST_P(InstallFaults, EveryPlatformCallFailedOnce) {
  EveryFault([](workbench::Gate& calls, std::uint64_t k) { calls.Inject({.function = "", .from = k}); },
             [](workbench::Gate& calls) { return calls.FaultableCalls(); });
}

TEST_P(InstallFaults, EveryAllocationFailedOnce) {
  EveryFault([](workbench::Gate& calls, std::uint64_t k) { calls.FailAllocation(k); },
             [](workbench::Gate& calls) { return calls.Allocations(); });
}

INSTANTIATE_TEST_SUITE_P(Scenarios, InstallFaults, testing::Range<std::size_t>(0, 6));

}  // namespace
