// Putting a device server's ports in order while they are installed.
#include <thread>

#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InstallSort : public InstallTest {
 protected:
  [[nodiscard]] std::optional<std::uint32_t> Flag() {
    return machine.Registry().Dword(Parameters(*server.card), L"ChildPortNameSorted");
  }
  // The calls that concern the installation of a device, without their common prefix, with what they held.
  [[nodiscard]] std::string StepsOn(const Device& device) {
    std::string steps;
    for (const workbench::Call& call : machine.Calls().Log()) {
      const std::string name = call.function;
      if (name.find("Install") == std::string::npos) continue;
      if (!call.injected && !call.detail.starts_with(device.instanceId)) continue;
      steps += name.substr(7, name.size() - (name.ends_with('W') ? 8 : 7));  // "SetupDi", "W"
      if (!call.injected) {
        for (const wchar_t c : call.detail.substr(device.instanceId.size())) steps += static_cast<char>(c);
      }
      steps += ", ";
    }
    return steps;
  }
};

TEST_F(InstallSort, PortsThatCameUpOutOfOrderEndInOrderWithOneRestart) {
  AddServer({7, 5, 6});
  InstallAll();
  EXPECT_THAT(PortNames(), ElementsAre(L"COM5", L"COM6", L"COM7"));
  ExpectAgreement();
  EXPECT_EQ(Flag(), 1u);
  EXPECT_THAT(Restarts(), ElementsAre(server.card->instanceId));
  EXPECT_THAT(machine.ComNames().Claimed(), ElementsAre(5, 6, 7));
  EXPECT_THAT(Questions(), IsEmpty());
  EXPECT_THAT(machine.Devices().EventsOf(DeviceEvent::Reenumerated), IsEmpty());
}

// Disabled and enabled for all hardware profiles or, where that is refused, for the present one. Where both
// are refused the class installer is not called: it would do once more what the element held before.
TEST_F(InstallSort, StepsOfARestart) {
  const std::string before = "GetDeviceInstallParams, SetDeviceInstallParams DI_PROPERTIES_CHANGE, ";
  const std::string behind = "CallClassInstaller DIF_PROPERTYCHANGE, GetDeviceInstallParams, ";
  const auto change = [](const char* state, const char* scope) {
    return std::string("SetClassInstallParams DICS_").append(state).append(" DICS_FLAG_") + scope +
           " profile 0, ";
  };
  const std::string refused = "SetClassInstallParams, ";
  const std::string disabled = before + change("DISABLE", "GLOBAL") + behind;
  const std::string enabled[] = {change("ENABLE", "GLOBAL") + behind,
                                 refused + change("ENABLE", "CONFIGSPECIFIC") + behind, refused + refused};
  for (std::size_t refusals = 0; refusals < 3; ++refusals) {
    wanted.number++;
    const unsigned number = 10 * wanted.number;
    AddServer({number + 1, number});
    machine.Calls().ClearLog();
    machine.Calls().Inject({.function = "SetupDiSetClassInstallParamsW", .from = 2, .count = refusals});
    InstallAll();
    machine.Calls().ClearFaults();
    EXPECT_EQ(StepsOn(*server.card), disabled + before + enabled[refusals]);
  }
}

TEST_F(InstallSort, ParametersThatCannotBeReadAreNotWrittenBack) {
  AddServer({6, 5});
  machine.Calls().Inject(
      {.function = "SetupDiGetDeviceInstallParamsW", .count = workbench::Fault::kEveryLater});
  InstallAll();
  EXPECT_EQ(machine.Calls().CountOf("SetupDiSetDeviceInstallParamsW"), 0u);
  EXPECT_THAT(PortNames(), ElementsAre(L"COM5", L"COM6"));
  EXPECT_THAT(Restarts(), ElementsAre(server.card->instanceId));
}

TEST_F(InstallSort, TheFirstFreeNumberFromThreeServesAsTheTemporaryOne) {
  AddForeignPort(machine, 3);
  AddServer({6, 5});
  server.ports[1]->port->openElsewhere = true;  // of no matter: nobody is asked during an installation
  InstallAll();
  EXPECT_THAT(Questions(), IsEmpty());
  std::vector<std::wstring> defined;
  for (const auto& call : machine.Calls().CallsOf("DefineDosDeviceW")) {
    if (call.Number(0) == 1) defined.push_back(call.Text(1));
  }
  EXPECT_THAT(defined, ElementsAre(L"COM4", L"COM5", L"COM6"));
  EXPECT_THAT(PortNames(), ElementsAre(L"COM5", L"COM6"));
}

TEST_F(InstallSort, PortsInOrderGetTheFlagAndNothingElse) {
  for (const auto& numbers : {std::vector<unsigned>{3, 4}, {12}, {4, 4}}) {
    wanted.number++;
    AddServer(numbers);
    const std::vector<std::wstring> before = PortNames();
    EXPECT_EQ(installer.Install(*server.ports[0]), static_cast<DWORD>(NO_ERROR));
    EXPECT_EQ(PortNames(), before);
    EXPECT_EQ(Flag(), 1u);
    machine.Devices().Remove(*server.card);
  }
  EXPECT_EQ(machine.Calls().CountOf("DefineDosDeviceW"), 0u);
  EXPECT_THAT(Restarts(), IsEmpty());
}

TEST_F(InstallSort, APortThatIsNotReadyPutsTheSortingOff) {
  AddServer({7, 5, 6});
  machine.Devices().Stop(*server.ports[2]);
  installer.Install(*server.ports[0]);
  EXPECT_THAT(PortNames(), ElementsAre(L"COM7", L"COM5", L"COM6"));
  EXPECT_FALSE(Flag());
  machine.Devices().Start(*server.ports[2]);
  machine.Registry().DeleteValue(Parameters(*server.ports[2]), L"PortName");
  installer.Install(*server.ports[0]);
  EXPECT_THAT(PortNames(), ElementsAre(L"COM7", L"COM5", L""));
  EXPECT_FALSE(Flag());
  machine.Registry().SetText(Parameters(*server.ports[2]), L"PortName", L"COM6");
  installer.Install(*server.ports[1]);
  EXPECT_THAT(PortNames(), ElementsAre(L"COM5", L"COM6", L"COM7"));
  EXPECT_EQ(Flag(), 1u);
}

TEST_F(InstallSort, AServerIsSortedOnce) {
  AddServer({7, 5});
  machine.Registry().SetDword(Parameters(*server.card), L"ChildPortNameSorted", 1);
  InstallAll();
  EXPECT_THAT(PortNames(), ElementsAre(L"COM7", L"COM5"));
  machine.Registry().SetDword(Parameters(*server.card), L"ChildPortNameSorted", 2);
  InstallAll();
  EXPECT_THAT(PortNames(), ElementsAre(L"COM5", L"COM7"));
}

TEST_F(InstallSort, ARenameThatFailsInASwapLeavesTheHolderAside) {
  AddServer({7, 5});
  // The second new name of the swap is refused, and the old one put back.
  machine.Calls().Inject({.function = "DefineDosDeviceW", .from = 4});
  installer.Install(*server.ports[0]);
  EXPECT_THAT(PortNames(), ElementsAre(L"COM7", L"COM3"));
  EXPECT_FALSE(Flag());
  EXPECT_THAT(Restarts(), IsEmpty());
  ExpectAgreement();
  installer.Install(*server.ports[1]);
  EXPECT_THAT(PortNames(), ElementsAre(L"COM3", L"COM7")) << "the next port tries again";
}

TEST_F(InstallSort, WithoutAFreeNumberOrTheDatabaseNothingIsSwapped) {
  AddServer({7, 5});
  for (DWORD number = 3; number <= 255; ++number) machine.ComNames().Claim(number);
  InstallAll();
  EXPECT_THAT(PortNames(), ElementsAre(L"COM7", L"COM5"));
  EXPECT_EQ(Flag(), 1u);
  for (DWORD number = 8; number <= 255; ++number) machine.ComNames().Release(number);
  machine.Registry().DeleteValue(Parameters(*server.card), L"ChildPortNameSorted");
  machine.ComNames().openError = ERROR_ACCESS_DENIED;
  InstallAll();
  EXPECT_THAT(PortNames(), ElementsAre(L"COM7", L"COM5"));
  EXPECT_THAT(Questions(), IsEmpty());
}

TEST_F(InstallSort, PortsInstalledAtOnceEndLikePortsInstalledOneByOne) {
  AddServer({12, 11, 10, 9, 8, 7, 6, 5});
  std::vector<std::thread> threads;
  for (Device* port : server.ports) {
    threads.emplace_back([this, port] { EXPECT_EQ(installer.Install(*port), static_cast<DWORD>(NO_ERROR)); });
  }
  for (std::thread& thread : threads) thread.join();
  // Each under the mutex: what one thread does is not mixed with another's.
  std::vector<DWORD> turns;
  for (const workbench::Call& call : machine.Calls().Log()) {
    const bool writes =
        call.function == std::string("RegSetValueExW") || call.function == std::string("ComDBOpen");
    if (writes && (turns.empty() || turns.back() != call.thread)) turns.push_back(call.thread);
  }
  EXPECT_LE(turns.size(), server.ports.size()) << "a thread may have the id of one that has ended";
  EXPECT_THAT(PortNames(),
              ElementsAre(L"COM5", L"COM6", L"COM7", L"COM8", L"COM9", L"COM10", L"COM11", L"COM12"));
  ExpectAgreement();
  EXPECT_THAT(Restarts(), ElementsAre(server.card->instanceId));
  for (const ComPlaces& places : AllComPlaces(machine)) EXPECT_EQ(places.portsValue, L"9600,n,8,1");
}

TEST_F(InstallSort, CallsGrowInStepWithThePorts) {
  std::vector<double> callsPerPort;
  for (const unsigned count : {8u, 32u, 96u}) {
    wanted.number = count;
    std::vector<unsigned> numbers;
    for (unsigned at = 0; at < count; ++at) numbers.push_back(250 - at);
    AddServer(numbers);
    machine.Calls().ClearLog();
    installer.Install(*server.ports[0]);
    EXPECT_EQ(Flag(), 1u);
    EXPECT_EQ(PortName(*server.ports[0]), L"COM" + std::to_wstring(251 - count));
    callsPerPort.push_back(static_cast<double>(machine.Calls().Log().size()) / count);
    machine.Devices().Remove(*server.card);
    for (DWORD number = 1; number <= 256; ++number) machine.ComNames().Release(number);
  }
  EXPECT_LT(callsPerPort.back(), callsPerPort.front() * 1.1);
}

}  // namespace
