// Putting a device server's ports in order while they are installed.
#include <thread>

#include "tests/dll/install_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InstallSort : public InstallFixture {
 protected:
  void InstallAll(const DeviceServer& server) {
    for (Device* port : server.ports) EXPECT_EQ(installer.Install(*port), static_cast<DWORD>(NO_ERROR));
  }
  [[nodiscard]] std::optional<std::uint32_t> Flag(const DeviceServer& server) {
    return machine.Registry().Dword(Parameters(*server.card), L"ChildPortNameSorted");
  }
};

TEST_F(InstallSort, PortsThatCameUpOutOfOrderEndInOrderWithOneRestart) {
  const DeviceServer server = AddServer({7, 5, 6});
  InstallAll(server);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM5", L"COM6", L"COM7"));
  ExpectAgreement();
  EXPECT_EQ(Flag(server), 1u);
  EXPECT_THAT(Restarts(), ElementsAre(server.card->instanceId));
  EXPECT_THAT(machine.ComNames().Claimed(), ElementsAre(5, 6, 7));
  EXPECT_THAT(Questions(), IsEmpty());
}

TEST_F(InstallSort, TheFirstFreeNumberFromThreeServesAsTheTemporaryOne) {
  AddForeignPort(machine, 3);
  const DeviceServer server = AddServer({6, 5});
  InstallAll(server);
  std::vector<std::wstring> defined;
  for (const auto& call : machine.Calls().CallsOf("DefineDosDeviceW")) {
    if (call.Number(0) == 1) defined.push_back(call.Text(1));
  }
  EXPECT_THAT(defined, ElementsAre(L"COM4", L"COM5", L"COM6"));
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM5", L"COM6"));
}

TEST_F(InstallSort, PortsInOrderGetTheFlagAndNothingElse) {
  for (const auto& numbers : {std::vector<unsigned>{3, 4}, {12}, {4, 4}}) {
    wanted.number++;
    const DeviceServer server = AddServer(numbers);
    const std::vector<std::wstring> before = PortNames(server);
    EXPECT_EQ(installer.Install(*server.ports[0]), static_cast<DWORD>(NO_ERROR));
    EXPECT_EQ(PortNames(server), before);
    EXPECT_EQ(Flag(server), 1u);
    machine.Devices().Remove(*server.card);
  }
  EXPECT_EQ(machine.Calls().CountOf("DefineDosDeviceW"), 0u);
  EXPECT_THAT(Restarts(), IsEmpty());
}

TEST_F(InstallSort, APortThatIsNotReadyPutsTheSortingOff) {
  const DeviceServer server = AddServer({7, 5, 6});
  machine.Devices().Stop(*server.ports[2]);
  installer.Install(*server.ports[0]);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM7", L"COM5", L"COM6"));
  EXPECT_FALSE(Flag(server));
  machine.Devices().Start(*server.ports[2]);
  machine.Registry().DeleteValue(Parameters(*server.ports[2]), L"PortName");
  installer.Install(*server.ports[0]);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM7", L"COM5", L""));
  EXPECT_FALSE(Flag(server));
  machine.Registry().SetText(Parameters(*server.ports[2]), L"PortName", L"COM6");
  installer.Install(*server.ports[1]);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM5", L"COM6", L"COM7"));
  EXPECT_EQ(Flag(server), 1u);
}

TEST_F(InstallSort, AServerIsSortedOnce) {
  const DeviceServer server = AddServer({7, 5});
  machine.Registry().SetDword(Parameters(*server.card), L"ChildPortNameSorted", 1);
  InstallAll(server);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM7", L"COM5"));
  machine.Registry().SetDword(Parameters(*server.card), L"ChildPortNameSorted", 2);
  InstallAll(server);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM5", L"COM7"));
}

TEST_F(InstallSort, ARenameThatFailsInASwapLeavesTheHolderAside) {
  const DeviceServer server = AddServer({7, 5});
  // The second new name of the swap is refused, and the old one put back.
  machine.Calls().Inject({.function = "DefineDosDeviceW", .from = 4});
  installer.Install(*server.ports[0]);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM7", L"COM3"));
  EXPECT_FALSE(Flag(server));
  EXPECT_THAT(Restarts(), IsEmpty());
  ExpectAgreement();
  installer.Install(*server.ports[1]);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM3", L"COM7")) << "the next port tries again";
}

TEST_F(InstallSort, WithoutAFreeNumberNothingIsSwapped) {
  const DeviceServer server = AddServer({7, 5});
  for (DWORD number = 3; number <= 255; ++number) machine.ComNames().Claim(number);
  InstallAll(server);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM7", L"COM5"));
  EXPECT_EQ(Flag(server), 1u);
}

TEST_F(InstallSort, WithoutTheDatabaseNothingIsSwapped) {
  const DeviceServer server = AddServer({7, 5});
  machine.ComNames().openError = ERROR_ACCESS_DENIED;
  InstallAll(server);
  EXPECT_THAT(PortNames(server), ElementsAre(L"COM7", L"COM5"));
  EXPECT_THAT(Questions(), IsEmpty());
}

TEST_F(InstallSort, PortsInstalledAtOnceEndLikePortsInstalledOneByOne) {
  const DeviceServer server = AddServer({12, 11, 10, 9, 8, 7, 6, 5});
  std::vector<std::thread> threads;
  for (Device* port : server.ports) {
    threads.emplace_back([this, port] { EXPECT_EQ(installer.Install(*port), static_cast<DWORD>(NO_ERROR)); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(PortNames(server),
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
    const DeviceServer server = AddServer(numbers);
    machine.Calls().ClearLog();
    installer.Install(*server.ports[0]);
    EXPECT_EQ(Flag(server), 1u);
    EXPECT_EQ(PortName(*server.ports[0]), L"COM" + std::to_wstring(251 - count));
    callsPerPort.push_back(static_cast<double>(machine.Calls().Log().size()) / count);
    machine.Devices().Remove(*server.card);
    for (DWORD number = 1; number <= 256; ++number) machine.ComNames().Release(number);
  }
  EXPECT_LT(callsPerPort.back(), callsPerPort.front() * 1.1);
}

}  // namespace
