// Putting a device server's ports in order while they are installed.
#include <thread>

#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::wstring>;

class InstallSort : public InstallTest {};

std::optional<std::uint32_t> FlagOf(InstallHost& host) {
  return host.machine.Registry().Dword(host.Parameters(*host.server.card), L"ChildPortNameSorted");
}

void SetFlag(InstallHost& host, std::uint32_t flag) {
  host.machine.Registry().SetDword(host.Parameters(*host.server.card), L"ChildPortNameSorted", flag);
}

TEST_F(InstallSort, PortsThatCameUpOutOfOrderEndInOrderWithOneRestart) {
  AddForeignPort(machine, 3);
  AddServer({7, 5, 6});
  Port(1).port->openElsewhere = true;  // of no matter: nobody is asked during an installation
  InstallAll();
  EXPECT_THAT(PortNames(), ElementsAre(L"COM5", L"COM6", L"COM7"));
  ExpectAgreement();
  EXPECT_EQ(FlagOf(*this), 1u);
  EXPECT_THAT(Restarts(), ElementsAre(server.card->instanceId));
  EXPECT_THAT(machine.ComNames().Claimed(), ElementsAre(3, 5, 6, 7));
  EXPECT_THAT(Questions(), IsEmpty());
  EXPECT_THAT(machine.Devices().EventsOf(DeviceEvent::Reenumerated), IsEmpty());
  // Aside to the first free number from 3 on.
  EXPECT_EQ(machine.Calls().CallsOf("DefineDosDeviceW").at(1).Text(1), L"COM4");
}

const struct {
  const char* what;
  std::vector<unsigned> numbers;
  void (*prepare)(InstallHost& host);
  Names names;
  std::optional<std::uint32_t> flag;
  bool restarts = false;
} kServers[] = {
    {"in order", {3, 4}, nullptr, {L"COM3", L"COM4"}, 1},
    {"sorted before", {7, 5}, [](InstallHost& host) { SetFlag(host, 1); }, {L"COM7", L"COM5"}, 1},
    {"another flag", {7, 5}, [](InstallHost& host) { SetFlag(host, 2); }, {L"COM5", L"COM7"}, 1, true},
    {"Windows 6.0",
     {7, 5},
     [](InstallHost& host) {
       host.machine.System().majorVersion = 6;
       host.machine.System().minorVersion = 0;
     },
     {L"COM7", L"COM5"},
     std::nullopt},
    {"a port is not started",
     {7, 5, 6},
     [](InstallHost& host) { host.machine.Devices().Stop(host.Port(2)); },
     {L"COM7", L"COM5", L"COM6"},
     std::nullopt},
    {"a port has no name", {7, 5, 0}, nullptr, {L"COM7", L"COM5", L""}, std::nullopt},
};

TEST(InstallSortWhen, OnlyAReadyServerWithoutTheFlagIsSortedAndRestarted) {
  for (const auto& row : kServers) {
    SCOPED_TRACE(row.what);
    InstallHost host;
    host.AddServer(row.numbers);
    if (row.prepare != nullptr) row.prepare(host);
    EXPECT_EQ(host.installer.Install(host.Port()), static_cast<DWORD>(NO_ERROR));
    EXPECT_EQ(host.PortNames(), row.names);
    EXPECT_EQ(FlagOf(host), row.flag);
    EXPECT_EQ(host.Restarts(), row.restarts ? Names{host.server.card->instanceId} : Names{});
    EXPECT_THAT(host.Questions(), IsEmpty());
  }
}

// Disabled and enabled for all hardware profiles or, where that is refused, for the present one. Where both
// are refused the class installer is not called: it would do once more what the element held before.
TEST(InstallSortRestart, ARefusedScopeIsFollowedByThePresentProfileAndOthersFlagsStay) {
  const std::wstring disabled = L" DICS_DISABLE DICS_FLAG_GLOBAL profile 0";
  const Names changes[] = {{disabled, L" DICS_ENABLE DICS_FLAG_GLOBAL profile 0"},
                           {disabled, L" DICS_ENABLE DICS_FLAG_CONFIGSPECIFIC profile 0"},
                           {disabled}};
  for (std::size_t refusals = 0; refusals < 3; ++refusals) {
    SCOPED_TRACE(refusals);
    InstallHost host;
    const std::wstring card = host.AddServer({6, 5}).card->instanceId;
    host.machine.Calls().Inject({.function = "SetupDiSetClassInstallParamsW", .from = 2, .count = refusals});
    host.InstallAll();
    Names made;
    for (const auto& call : host.machine.Calls().CallsOf("SetupDiSetClassInstallParamsW")) {
      if (!call.injected) made.push_back(call.detail.substr(card.size()));
    }
    EXPECT_EQ(made, changes[refusals]);
    EXPECT_EQ(host.machine.Calls().CountOf("SetupDiCallClassInstaller"), made.size());
    EXPECT_EQ(host.Restarts().size(), made.size() - 1);
  }
}

TEST_F(InstallSort, PortsInstalledAtOnceEndLikePortsInstalledOneByOne) {
  AddServer({12, 11, 10, 9, 8, 7, 6, 5});
  std::vector<std::thread> threads;
  for (Device* port : server.ports) {
    threads.emplace_back([this, port] { EXPECT_EQ(installer.Install(*port), static_cast<DWORD>(NO_ERROR)); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(PortNames(),
              ElementsAre(L"COM5", L"COM6", L"COM7", L"COM8", L"COM9", L"COM10", L"COM11", L"COM12"));
  ExpectAgreement();
  EXPECT_THAT(Restarts(), ElementsAre(server.card->instanceId));
  for (const ComPlaces& places : AllComPlaces(machine)) EXPECT_EQ(places.portsValue, L"9600,n,8,1");
}

}  // namespace
