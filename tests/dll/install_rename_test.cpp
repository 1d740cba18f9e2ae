// Renaming a port: the five places, the questions, and what a failing step leaves behind.
#include <map>

#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InstallRename : public InstallTest {
 protected:
  void SetUp() override { port = AddServer({5}).ports[0]; }
  BOOL Rename(const wchar_t* name) { return dll->ChangeComNumber(port->instanceId.c_str(), name); }
  [[nodiscard]] std::wstring FriendlyName() {
    return machine.Registry().Text(workbench::EnumKeyOf(port->instanceId), L"FriendlyName").value_or(L"");
  }

  Device* port = nullptr;
};

TEST_F(InstallRename, MovesAllFivePlacesAndWritesTheDefaultSettings) {
  EXPECT_EQ(Rename(L"COM9"), 1);
  const ComPlaces places = PlacesOf(machine, *port);
  EXPECT_TRUE(places.Agree()) << Table();
  EXPECT_EQ(places.portName, L"COM9");
  EXPECT_EQ(places.friendlyName, L"Veltranet Serial Port (COM9)");
  EXPECT_THAT(places.dosDevices, ElementsAre(L"COM9"));
  EXPECT_EQ(places.portsValue, L"9600,n,8,1");
  EXPECT_FALSE(machine.ComNames().IsClaimed(5));
  EXPECT_THAT(Questions(), IsEmpty());
  EXPECT_TRUE(port->changePending);
  EXPECT_THAT(machine.Devices().EventsOf(DeviceEvent::Reenumerated),
              ElementsAre(machine.Devices().Root().instanceId));
  EXPECT_THAT(Restarts(), IsEmpty());
}

TEST_F(InstallRename, CallsThePlatformInTheStatedOrder) {
  Rename(L"COM9");
  EXPECT_THAT(
      machine.Calls().OrderOf({"CreateFileW", "ComDBOpen", "ComDBGetCurrentPortUsage", "QueryDosDeviceW",
                               "DefineDosDeviceW", "ComDBReleasePort", "ComDBClaimPort", "ComDBClose",
                               "SetupDiSetDeviceRegistryPropertyW", "SetupDiSetDeviceInstallParamsW",
                               "CM_Reenumerate_DevNode"}),
      ElementsAre("CreateFileW", "ComDBOpen", "ComDBGetCurrentPortUsage", "QueryDosDeviceW",
                  "DefineDosDeviceW", "DefineDosDeviceW", "QueryDosDeviceW", "QueryDosDeviceW",
                  "ComDBReleasePort", "ComDBClaimPort", "ComDBClose", "SetupDiSetDeviceRegistryPropertyW",
                  "SetupDiSetDeviceInstallParamsW", "CM_Reenumerate_DevNode"));

  const auto open = machine.Calls().CallsOf("CreateFileW").at(0);
  EXPECT_EQ(open.Text(0), L"\\\\.\\COM5");
  EXPECT_EQ(open.Number(1), GENERIC_READ | GENERIC_WRITE);
  EXPECT_EQ(open.Number(2), 0u);
  EXPECT_EQ(open.Number(4), static_cast<DWORD>(OPEN_EXISTING));
  EXPECT_EQ(open.Number(5), static_cast<DWORD>(FILE_FLAG_OVERLAPPED));
  const auto defines = machine.Calls().CallsOf("DefineDosDeviceW");
  EXPECT_EQ(defines.at(0).Number(0), 7u);
  EXPECT_EQ(defines.at(0).Text(1), L"COM5");
  EXPECT_EQ(defines.at(0).Text(2), port->port->kernelDevice);
  EXPECT_EQ(defines.at(1).Number(0), 1u);
  EXPECT_EQ(defines.at(1).Text(1), L"COM9");
  const auto usage = machine.Calls().CallsOf("ComDBGetCurrentPortUsage").at(0);
  EXPECT_EQ(usage.Number(2), 256u);
  EXPECT_EQ(usage.Number(3), 1u);
  EXPECT_EQ(machine.Calls().CallsOf("ComDBClaimPort").at(0).Number(2), 1u);
  const auto devices = machine.Calls().CallsOf("SetupDiGetClassDevsW").at(0);
  EXPECT_EQ(devices.Number(3), 6u);
  EXPECT_EQ(machine.Calls().CallsOf("SetupDiOpenDeviceInfoW").at(0).Number(3), 6u);
}

// "PortName" is written without its terminator (what the registry makes of that is its own business); the
// Ports value and the map's are written with it.
TEST_F(InstallRename, HowNamesAreWritten) {
  Rename(L"COM19");
  std::map<std::wstring, std::uint64_t> sizes;
  for (const auto& call : machine.Calls().CallsOf("RegSetValueExW")) {
    sizes[call.Text(1)] = call.Number(5);
    EXPECT_EQ(call.Number(3), static_cast<DWORD>(REG_SZ));
  }
  EXPECT_EQ(sizes[L"PortName"], 10u);
  EXPECT_EQ(sizes[L"COM19:"], 22u);
  EXPECT_EQ(sizes[port->port->kernelDevice], 12u);
  EXPECT_EQ(machine.Calls().CallsOf("SetupDiSetDeviceRegistryPropertyW").at(0).Number(4),
            2 * (FriendlyName().size() + 1));
  SetRaw(*port, L"PortName", REG_SZ, L"COM19");
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_EQ(PortName(*port), L"COM9");
  EXPECT_FALSE(machine.ComNames().IsClaimed(19));
}

TEST_F(InstallRename, ATakenNameIsAskedAbout) {
  AddForeignPort(machine, 9);
  machine.Screen().Answer(IDNO);
  EXPECT_EQ(Rename(L"COM9"), 1) << "declined is not reported";
  EXPECT_THAT(Questions(), ElementsAre(kNameTaken));
  EXPECT_EQ(machine.Screen().messageBoxes[0].caption, L"Error");
  EXPECT_EQ(machine.Screen().messageBoxes[0].style, 0x44u);
  EXPECT_EQ(machine.Screen().messageBoxes[0].owner, nullptr);
  ExpectAgreement();
  EXPECT_EQ(PortName(*port), L"COM5");
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::ComDatabase), 0u);
  EXPECT_EQ(machine.Calls().CountOf("ComDBReleasePort"), 0u);

  machine.Screen().Answer(IDYES);
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_EQ(PortName(*port), L"COM9");
  EXPECT_TRUE(machine.ComNames().IsClaimed(9));
  EXPECT_FALSE(machine.ComNames().IsClaimed(5));
}

TEST_F(InstallRename, ItsOwnNameIsATakenName) {
  machine.Screen().Answer(IDYES);
  EXPECT_EQ(Rename(L"COM5"), 1);
  EXPECT_THAT(Questions(), ElementsAre(kNameTaken));
  ExpectAgreement();
  EXPECT_EQ(PortName(*port), L"COM5");
}

TEST_F(InstallRename, AnOpenPortIsAskedAboutFirst) {
  AddForeignPort(machine, 9);
  port->port->openElsewhere = true;
  machine.Screen().Answer(IDNO);
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_THAT(Questions(), ElementsAre(kPortOpen));
  EXPECT_EQ(machine.Calls().CountOf("ComDBOpen"), 0u);
  machine.Screen().Answer(IDYES);
  machine.Screen().Answer(IDYES);
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_THAT(Questions(), ElementsAre(kPortOpen, kPortOpen, kNameTaken));
  EXPECT_EQ(PortName(*port), L"COM9");
}

TEST_F(InstallRename, UsbModelsTakeATakenNumberWithoutAsking) {
  const struct {
    const wchar_t* hardwareId;
    bool asks;
  } cases[] = {
      {L"USB\\VID_3A7E&PID_1015", false},       {L"usb\\vid_3a7e&pid_5002&mi_00", false},
      {L"USB\\VID_3A7E&PID_5002&MI_01", false}, {L"USB\\VID_3A7E&PID_1089", true},
      {L"USB\\VID_3A7E&PID_2000", true},
  };
  AddForeignPort(machine, 9);
  unsigned number = 20;
  for (const auto& row : cases) {
    machine.Screen().messageBoxes.clear();
    port =
        AddUsbDevice(machine,
                     {.hardwareId = row.hardwareId, .instance = std::to_wstring(number), .comNumber = number})
            .port;
    machine.Calls().ClearLog();
    EXPECT_EQ(Rename(L"COM9"), 1);
    std::vector<std::uint64_t> released;
    for (const auto& call : machine.Calls().CallsOf("ComDBReleasePort")) released.push_back(call.Number(1));
    const std::vector<std::uint64_t> both = {9, number};
    EXPECT_EQ(released, row.asks ? std::vector<std::uint64_t>() : both) << row.hardwareId;
    ++number;
    EXPECT_EQ(Questions().size(), row.asks ? 1u : 0u) << row.hardwareId;
    EXPECT_EQ(PortName(*port) == L"COM9", !row.asks) << row.hardwareId;
  }
}

TEST_F(InstallRename, AnUnknownParentIsAskedAboutLikeAnyOther) {
  port = AddUsbDevice(machine, {.hardwareId = L"USB\\VID_3A7E&PID_1015", .comNumber = 20}).port;
  AddForeignPort(machine, 9);
  machine.Calls().Inject({.function = "CM_Get_Parent"});
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_THAT(Questions(), ElementsAre(kNameTaken));
}

TEST_F(InstallRename, FriendlyNames) {
  const struct {
    const wchar_t* before;
    const wchar_t* after;
  } cases[] = {
      {L"Port (COM5)", L"Port (COM6)"},
      {L"COM5 and COM5 (COM5)", L"COM6 and COM6 (COM6)"},
      {L"No name in it", L"No name in it"},
      {L"COM55", L"COM65"},
  };
  for (const auto& row : cases) {
    machine.Registry().SetText(workbench::EnumKeyOf(port->instanceId), L"FriendlyName", row.before);
    EXPECT_EQ(Rename(L"COM6"), 1);
    EXPECT_EQ(FriendlyName(), row.after);
    EXPECT_EQ(Rename(L"COM5"), 1);
  }
  const std::wstring longName = std::wstring(500, L'x') + L" (COM5)";
  machine.Registry().SetText(workbench::EnumKeyOf(port->instanceId), L"FriendlyName", longName);
  EXPECT_EQ(Rename(L"COM6"), 1);
  EXPECT_EQ(FriendlyName(), std::wstring(500, L'x') + L" (COM6)");
}

// Names that nobody would give, and numbers at the ends of the database.
TEST_F(InstallRename, OddNames) {
  const struct {
    const wchar_t* name;
    bool asks;
    std::optional<DWORD> number;
  } cases[] = {
      {L"COM256", false, 256},
      {L"COM257", true, 257},
      {L"COM0", true, std::nullopt},
      {L"COM", true, std::nullopt},
      {L"LPTx", true, std::nullopt},
      {L"COM-3", true, std::nullopt},
      {L"COM99999999999", true, std::nullopt},
      {L"COM12x", false, 12},
  };
  machine.Screen().AnswerBy([](const auto&) { return IDYES; });
  for (const auto& row : cases) {
    machine.Screen().messageBoxes.clear();
    EXPECT_EQ(Rename(row.name), 1);
    EXPECT_EQ(Questions().size(), row.asks ? 1u : 0u) << row.name;
    EXPECT_EQ(PortName(*port), row.name);
    EXPECT_TRUE(!row.number || machine.ComNames().IsClaimed(*row.number)) << row.name;
  }
}

TEST_F(InstallRename, NullsAndStrangers) {
  EXPECT_EQ(dll->ChangeComNumber(nullptr, L"COM9"), 0);
  EXPECT_EQ(dll->ChangeComNumber(nullptr, nullptr), 0);
  EXPECT_EQ(dll->ChangeComNumber(L"", L"COM9"), 0);
  EXPECT_EQ(dll->ChangeComNumber(L"KDNBUS\\NOBODY\\1", L"COM9"), 0);
  EXPECT_EQ(dll->ChangeComNumber(port->instanceId.c_str(), nullptr), 1);
  EXPECT_THAT(Questions(), ElementsAre(kNameTaken)) << "the empty name has the number 0";
  EXPECT_EQ(PortName(*port), L"COM5");
  machine.Registry().DeleteValue(Parameters(*port), L"PortName");
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_EQ(machine.Calls().CountOf("ComDBOpen"), 1u) << "only the declined rename came that far";
}

// A value is read when 149 characters and a terminator, or less, are there.
TEST_F(InstallRename, TooLongPortNamesCountAsAbsent) {
  const std::wstring name = L"COM5" + std::wstring(145, L'x');  // 149 characters
  machine.DosNames().Define(name, port->port->kernelDevice);
  SetRaw(*port, L"PortName", REG_SZ, name + L'x');  // 300 bytes, no terminator
  Rename(L"COM9");
  SetRaw(*port, L"PortName", REG_SZ, name + L"xx");
  Rename(L"COM9");
  EXPECT_EQ(machine.Calls().CountOf("CreateFileW"), 0u) << "no port of that name is tried";
  SetRaw(*port, L"PortName", REG_BINARY, name);  // no terminator, and another type
  Rename(L"COM9");
  EXPECT_EQ(PortName(*port), L"COM9");
}

// Step by step: what each failing call leaves.
TEST_F(InstallRename, FailingSteps) {
  const struct {
    const char* function;
    std::uint64_t from;
    bool dosMoved;
    bool claimMoved;
    bool nameMoved;
  } cases[] = {
      {"ComDBGetCurrentPortUsage", 1, false, false, false},  // every number is taken
      {"QueryDosDeviceW", 1, false, false, false},
      {"DefineDosDeviceW", 1, false, false, false},
      {"DefineDosDeviceW", 2, false, false, false},  // put back
      {"QueryDosDeviceW", 3, true, true, true},      // the path is known from the first
      {"SetupDiGetDeviceRegistryPropertyW", 1, true, true, false},
      {"SetupDiSetDeviceRegistryPropertyW", 1, true, true, false},
      {"RegCreateKeyExW", 1, true, true, true},  // no default settings
      {"SetupDiSetDeviceInstallParamsW", 1, true, true, true},
      {"CM_Reenumerate_DevNode", 1, true, true, true},
  };
  unsigned number = 2;
  for (const auto& row : cases) {
    wanted.number = number++;
    port = AddServer({30}).ports[0];
    machine.Calls().Inject({.function = row.function, .from = row.from});
    EXPECT_EQ(Rename(L"COM31"), 1);
    EXPECT_THAT(machine.DosNames().NamesOf(port->port->kernelDevice),
                ElementsAre(row.dosMoved ? L"COM31" : L"COM30"))
        << row.function << " " << row.from;
    EXPECT_EQ(machine.ComNames().IsClaimed(31), row.claimMoved) << row.function;
    EXPECT_EQ(machine.ComNames().IsClaimed(30), !row.claimMoved) << row.function;
    EXPECT_EQ(PortName(*port), row.nameMoved ? L"COM31" : L"COM30") << row.function;
    machine.Calls().ClearFaults();
    machine.Devices().Remove(*port->parent);
    for (const DWORD used : {30u, 31u}) machine.ComNames().Release(used);
    for (const wchar_t* name : {L"COM30", L"COM31"}) machine.DosNames().Remove(name, L"", false);
  }
}

TEST_F(InstallRename, WithoutTheMapTheDosDeviceKeepsTheNewName) {
  machine.Registry().DeleteKey(workbench::kSerialCommKey);
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_THAT(machine.DosNames().NamesOf(port->port->kernelDevice), ElementsAre(L"COM9"));
  EXPECT_TRUE(machine.ComNames().IsClaimed(5));
  EXPECT_FALSE(machine.ComNames().IsClaimed(9));
  EXPECT_EQ(PortName(*port), L"COM5");
}

TEST_F(InstallRename, WithoutTheDatabaseEveryNameIsTaken) {
  machine.ComNames().openError = ERROR_ACCESS_DENIED;
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_THAT(Questions(), ElementsAre(kNameTaken));
  machine.Screen().Answer(IDYES);
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_EQ(PortName(*port), L"COM9");
}

}  // namespace
