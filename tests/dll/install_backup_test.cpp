// Settings and names of ports across a reinstallation of their device server.
#include <map>
#include <set>

#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class InstallBackup : public InstallTest {
 protected:
  void SetSettings(const Device& port, std::uint32_t baudRate) {
    machine.Registry().SetDword(Parameters(port), L"Baudrate", baudRate);
    machine.Registry().SetDword(Parameters(port), L"BaudRatesSupported", 0xFFFF);
    machine.Registry().SetText(Parameters(port), L"Comment", L"not a setting");
    machine.Registry().SetDword(Parameters(port) + L"\\UI1", L"Help", 7);
    machine.Registry().SetText(Parameters(port) + L"\\UI1", L"Last", L"page");
  }
  // The installation of the server, with its bus finding the ports again on other numbers.
  void Reinstall(std::vector<unsigned> newNumbers) {
    EXPECT_EQ(installer.Install(*server.card), static_cast<DWORD>(NO_ERROR));
    wanted.comNumbers = std::move(newNumbers);
    FindPortsAgain(machine, server, wanted);
  }
  [[nodiscard]] std::wstring BackupPath(const Device& card, const wchar_t* portPart) {
    return Parameters(card) + L"\\KDNBUS_T_" + portPart;
  }
};

constexpr wchar_t kFirstPort[] = L"1&2F8C1D3A&0&01";

TEST_F(InstallBackup, SettingsAndNamesComeBack) {
  AddServer({5, 6});
  SetSettings(*server.ports[0], 115200);
  SetSettings(*server.ports[1], 300);
  Reinstall({11, 10});
  EXPECT_THAT(machine.ComNames().Claimed(), ElementsAre(10, 11)) << "5 and 6 were given back";
  machine.Registry().SetDword(Parameters(*server.ports[0]), L"BaudRatesSupported", 1);
  InstallAll();

  EXPECT_THAT(PortNames(), ElementsAre(L"COM5", L"COM6"));
  ExpectAgreement();
  EXPECT_THAT(machine.ComNames().Claimed(), ElementsAre(5, 6));
  EXPECT_EQ(machine.Registry().Dword(Parameters(*server.ports[0]), L"Baudrate"), 115200u);
  EXPECT_EQ(machine.Registry().Dword(Parameters(*server.ports[1]), L"Baudrate"), 300u);
  EXPECT_EQ(machine.Registry().Dword(Parameters(*server.ports[0]), L"BaudRatesSupported"), 1u);
  EXPECT_FALSE(machine.Registry().Dword(Parameters(*server.ports[1]), L"BaudRatesSupported"));
  EXPECT_FALSE(machine.Registry().Text(Parameters(*server.ports[0]), L"Comment"));
  EXPECT_EQ(machine.Registry().Dword(Parameters(*server.ports[0]) + L"\\UI1", L"Help"), 7u);
  EXPECT_EQ(machine.Registry().Text(Parameters(*server.ports[1]) + L"\\UI1", L"Last"), L"page");
  EXPECT_THAT(Restarts(), IsEmpty()) << "restored ports are not sorted";
  EXPECT_FALSE(machine.Registry().Dword(Parameters(*server.card), L"ChildPortNameSorted"));
}

TEST_F(InstallBackup, WhatABackupHolds) {
  AddServer({5});
  SetSettings(*server.ports[0], 115200);
  machine.Registry().SetText(Parameters(*server.ports[0]), L"portname2", L"x");
  Reinstall({});
  const std::wstring backup = BackupPath(*server.card, kFirstPort);
  EXPECT_THAT(machine.Registry().ValueNames(backup),
              UnorderedElementsAre(L"Baudrate", L"BaudRatesSupported", L"PortName"));
  EXPECT_THAT(machine.Registry().ValueNames(backup + L"\\UI1"), UnorderedElementsAre(L"Help", L"Last"));
}

// With the rights that are needed and no others: who may not have them all has none.
TEST_F(InstallBackup, RightsThatKeysAreOpenedWith) {
  AddServer({5});
  SetSettings(*server.ports[0], 115200);
  Reinstall({8});
  InstallAll();
  std::map<std::wstring, std::set<std::uint64_t>> rights;
  for (const auto& call : machine.Calls().CallsOf("RegOpenKeyExW")) {
    rights[call.Text(1)].insert(call.Number(3));
  }
  for (const auto& call : machine.Calls().CallsOf("RegCreateKeyExW")) {
    rights[L"make " + call.Text(1)].insert(call.Number(5));
  }
  for (const auto& call : machine.Calls().CallsOf("SetupDiOpenDevRegKey")) {
    rights[L"of the device"].insert(call.Number(5));
  }
  const std::wstring port = Parameters(*server.ports[0]);
  const std::map<std::wstring, std::set<std::uint64_t>> expected = {
      {port, {0x20019}},
      {port + L"\\UI1", {0x20019}},
      {L"make KDNBUS_T_" + std::wstring(kFirstPort), {0x2001F}},
      {L"make UI1", {0x2001F}},
      {BackupPath(*server.card, kFirstPort), {0x20019}},
      {L"UI1", {0x20019}},
      {Parameters(*server.card), {0x2001B}},
      {workbench::kSerialCommKey, {0xF003F}},
      {std::wstring(L"make ") + workbench::kPortsKey, {0x2001F}},
      {L"of the device", {GENERIC_READ, GENERIC_WRITE}},
  };
  EXPECT_EQ(rights, expected);
}

TEST_F(InstallBackup, ABackupGoesUnlessItHasPageValues) {
  AddServer({5});
  machine.Registry().SetDword(Parameters(*server.ports[0]), L"Baudrate", 300);
  Reinstall({8});
  ASSERT_TRUE(machine.Registry().HasKey(BackupPath(*server.card, kFirstPort)));
  InstallAll();
  EXPECT_FALSE(machine.Registry().HasKey(BackupPath(*server.card, kFirstPort)));
  const auto removal = machine.Calls().CallsOf("RegDeleteKeyExW").at(0);
  EXPECT_EQ(removal.Number(2) | removal.Number(3), 0u);

  SetSettings(*server.ports[0], 600);
  Reinstall({8});
  InstallAll();
  EXPECT_TRUE(machine.Registry().HasKey(BackupPath(*server.card, kFirstPort)));
  machine.Registry().SetDword(Parameters(*server.ports[0]), L"Baudrate", 1200);
  InstallAll();
  EXPECT_EQ(machine.Registry().Dword(Parameters(*server.ports[0]), L"Baudrate"), 600u) << "restored again";
}

TEST_F(InstallBackup, APortWithoutABackupIsNew) {
  AddServer({5});
  machine.Registry().SetDword(Parameters(*server.ports[0]), L"Baudrate", 300);
  InstallAll();
  EXPECT_EQ(machine.Registry().Dword(Parameters(*server.ports[0]), L"Baudrate"), 300u);
  EXPECT_EQ(machine.Calls().CountOf("DefineDosDeviceW"), 0u);
  EXPECT_EQ(PlacesOf(machine, *server.ports[0]).portsValue, L"9600,n,8,1");
}

TEST_F(InstallBackup, ARestoredPortKeepsItsPortsValueOnlyThroughTheRename) {
  AddServer({5});
  machine.Registry().SetText(workbench::kPortsKey, L"COM5:", L"115200,e,7,2");
  // Without a saved name nothing is renamed and no default written.
  machine.Registry().DeleteValue(Parameters(*server.ports[0]), L"PortName");
  Reinstall({5});
  InstallAll();
  EXPECT_EQ(PlacesOf(machine, *server.ports[0]).portsValue, L"115200,e,7,2");
}

TEST_F(InstallBackup, TheNumberThatThePortStillHoldsIsClaimedAgain) {
  AddServer({5});
  Reinstall({5});
  machine.Calls().ClearLog();
  InstallAll();
  EXPECT_THAT(PortNames(), ElementsAre(L"COM5"));
  ExpectAgreement();
  EXPECT_THAT(Questions(), IsEmpty());
  EXPECT_THAT(machine.Calls().OrderOf({"ComDBReleasePort", "ComDBClaimPort"}),
              ElementsAre("ComDBReleasePort", "ComDBReleasePort", "ComDBClaimPort"));
}

// An open port is renamed as long as its present name is a DOS device.
TEST_F(InstallBackup, AnOpenPortIsRenamedToo) {
  for (const bool isDevice : {false, true}) {
    wanted.number++;
    AddServer({5});
    Reinstall({8});
    server.ports[0]->port->openElsewhere = true;
    machine.Calls().ClearLog();
    // Asked first whether the port is to be looked at at all.
    if (!isDevice) machine.Calls().Inject({.function = "QueryDosDeviceW", .from = 2});
    InstallAll();
    EXPECT_THAT(PortNames(), ElementsAre(isDevice ? L"COM5" : L"COM8"));
    EXPECT_EQ(machine.Calls().CountOf("ComDBOpen") != 0, isDevice);
    installer.Remove(*server.ports[0]);
  }
  EXPECT_THAT(machine.Calls().OrderOf({"ComDBReleasePort", "ComDBClaimPort"}),
              ElementsAre("ComDBReleasePort", "ComDBClaimPort", "ComDBReleasePort"))
      << "the free number 5 is not given back first";
  EXPECT_THAT(Questions(), IsEmpty());
}

TEST_F(InstallBackup, AUsbPortIsRestoredAndThenTakesItsFixedNumber) {
  const auto made = AddUsbDevice(machine, {.hardwareId = L"USB\\VID_3A7E&PID_1015", .comNumber = 9});
  const std::wstring backup = Parameters(*made.usb) + L"\\KDUSB_T_5&1A2B3C4D&0&1&00";
  machine.Registry().SetDword(backup, L"Baudrate", 2400);
  installer.Install(*made.port);
  EXPECT_EQ(machine.Registry().Dword(Parameters(*made.port), L"Baudrate"), 2400u);
  EXPECT_EQ(PortName(*made.port), L"COM2");
}

TEST_F(InstallBackup, OddValues) {
  AddServer({5});
  const std::wstring key = Parameters(*server.ports[0]);
  const std::wstring longName(16383, L'n');
  machine.Registry().SetDword(key, longName, 77);
  machine.Registry().SetRaw(key, L"Short", REG_DWORD, "\x05\x01", 2);
  machine.Registry().SetRaw(key, L"Long", REG_DWORD, "\1\0\0\0\0\0\0\0", 8);
  machine.Registry().SetRaw(key, L"Empty", REG_DWORD, "", 0);
  machine.Registry().SetRaw(key, L"Qword", REG_QWORD, "\1\0\0\0\0\0\0\0", 8);
  machine.Registry().SetDword(key, L"", 3);
  machine.Registry().SetDword(key, L"Last", 4);
  const std::wstring longText(5000, L't');
  machine.Registry().SetText(key + L"\\UI1", L"Long", longText);
  machine.Registry().SetRaw(key + L"\\UI1", L"Open", REG_SZ, L"end", 6);
  machine.Registry().SetTexts(key + L"\\UI1", L"Many", {L"a", L"b"});
  Reinstall({8});
  InstallAll();

  const std::wstring restored = Parameters(*server.ports[0]);
  const workbench::RegistrySandbox& registry = machine.Registry();
  EXPECT_EQ(registry.Dword(restored, longName), 77u);
  EXPECT_EQ(registry.Dword(restored, L"Short"), 0x105u);
  EXPECT_FALSE(registry.Raw(restored, L"Long"));
  EXPECT_FALSE(registry.Raw(restored, L"Qword"));
  EXPECT_EQ(registry.Dword(restored, L""), 3u);
  EXPECT_EQ(registry.Dword(restored, L"Last"), 4u);
  EXPECT_EQ(registry.Text(restored + L"\\UI1", L"Long"), longText);
  EXPECT_EQ(registry.Text(restored + L"\\UI1", L"Open"), L"end");
  EXPECT_FALSE(registry.Raw(restored + L"\\UI1", L"Many"));
  EXPECT_THAT(PortNames(), ElementsAre(L"COM5"));
}

TEST_F(InstallBackup, IdsWithoutASecondBackslashHaveABackupToo) {
  AddServer({});
  machine.Devices().Add({.instanceId = L"KDNBUS\\PORT",
                         .classGuid = workbench::kPortsClass,
                         .className = L"Ports",
                         .description = L"Port"},
                        server.card);
  machine.Registry().SetDword(workbench::ParametersKeyOf(L"KDNBUS\\PORT"), L"Baudrate", 300);
  Reinstall({});
  EXPECT_EQ(machine.Registry().Dword(Parameters(*server.card) + L"\\KDNBUS_PORT", L"Baudrate"), 300u);
}

TEST_F(InstallBackup, ServersWithNoneOrVeryManyPorts) {
  AddServer({});
  Reinstall({});
  EXPECT_TRUE(machine.Calls().CallsOf("SetupDiCallClassInstaller").empty());

  wanted.number = 2;
  std::vector<unsigned> numbers;
  for (unsigned number = 3; number < 3 + 254; ++number) numbers.push_back(number);
  AddServer(numbers);
  Reinstall({});
  EXPECT_THAT(machine.ComNames().Claimed(), IsEmpty());
  EXPECT_EQ(machine.Registry().KeyNames(Parameters(*server.card)).size(), 254u);
  for (const Device* child : server.card->children) EXPECT_TRUE(child->removed);
}

// Keys that do not open: nothing is lost that was not there to save, and the ports still go.
TEST_F(InstallBackup, KeysThatDoNotOpen) {
  struct Case {
    const char* function;
    std::uint64_t from;
    bool backedUp;
  };
  for (const Case& row : {Case{"SetupDiOpenDevRegKey", 1, false}, Case{"RegCreateKeyExW", 1, false},
                          Case{"RegOpenKeyExW", 1, true}, Case{"CM_Get_Device_ID_Size", 1, false}}) {
    wanted.number++;
    AddServer({5});
    machine.Registry().SetDword(Parameters(*server.ports[0]), L"Baudrate", 300);
    machine.Calls().Inject({.function = row.function, .from = row.from});
    Reinstall({8});
    machine.Calls().ClearFaults();
    EXPECT_EQ(machine.Registry().KeyNames(Parameters(*server.card)).size(), row.backedUp ? 1u : 0u)
        << row.function;
    InstallAll();
    EXPECT_FALSE(machine.Registry().Dword(Parameters(*server.ports[0]), L"Baudrate")) << row.function;
    // An empty backup counts: the port is neither sorted nor given the default settings.
    EXPECT_EQ(PlacesOf(machine, *server.ports[0]).portsValue.empty(), row.backedUp) << row.function;
    machine.Devices().Remove(*server.card);
    machine.Registry().DeleteKey(workbench::kPortsKey);
    for (DWORD number = 1; number < 20; ++number) machine.ComNames().Release(number);
  }
}

}  // namespace
