// Renaming a port: the five places, the questions, and what a failing step leaves behind.
#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::wstring>;

// A computer with one port.
class RenameHost : public InstallHost {
 public:
  explicit RenameHost(unsigned number = 5) { AddServer({number}); }
  BOOL Rename(const wchar_t* name) { return dll->ChangeComNumber(Port().instanceId.c_str(), name); }
  void SetPortName(DWORD type, const std::wstring& text) {
    machine.Registry().SetRaw(Parameters(Port()), L"PortName", type, text.data(),
                              static_cast<DWORD>(text.size() * sizeof(wchar_t)));
  }
};

class InstallRename : public testing::Test, public RenameHost {};

TEST_F(InstallRename, MovesAllFivePlacesAndWritesTheDefaultSettings) {
  EXPECT_EQ(Rename(L"COM9"), 1);
  ExpectAgreement();
  const ComPlaces places = PlacesOf(machine, Port());
  EXPECT_EQ(places.portName, L"COM9");
  EXPECT_EQ(places.friendlyName, L"Veltranet Serial Port (COM9)");
  EXPECT_THAT(places.dosDevices, ElementsAre(L"COM9"));
  EXPECT_EQ(places.portsValue, L"9600,n,8,1");
  EXPECT_FALSE(machine.ComNames().IsClaimed(5));
  EXPECT_THAT(Questions(), IsEmpty());
  EXPECT_TRUE(Port().changePending);
  EXPECT_THAT(machine.Devices().EventsOf(DeviceEvent::Reenumerated),
              ElementsAre(machine.Devices().Root().instanceId));
  EXPECT_THAT(Restarts(), IsEmpty());
}

// "PortName" is written without its terminator (what the registry makes of that is its own business); the
// Ports value, the map's and the friendly name are written with it.
TEST_F(InstallRename, CallsHaveTheirArguments) {
  Rename(L"COM19");
  const struct {
    const char* function;
    std::size_t call;
    std::vector<std::pair<std::size_t, std::uint64_t>> numbers;
    std::vector<std::pair<std::size_t, std::wstring>> texts;
  } cases[] = {
      {"CreateFileW",
       0,
       {{1, GENERIC_READ | GENERIC_WRITE}, {2, 0}, {4, OPEN_EXISTING}, {5, FILE_FLAG_OVERLAPPED}},
       {{0, L"\\\\.\\COM5"}}},
      {"SetupDiGetClassDevsW", 0, {{3, DIGCF_PRESENT | DIGCF_ALLCLASSES}}, {}},
      {"DefineDosDeviceW",
       0,
       {{0, DDD_RAW_TARGET_PATH | DDD_REMOVE_DEFINITION | DDD_EXACT_MATCH_ON_REMOVE}},
       {{1, L"COM5"}, {2, Port().port->kernelDevice}}},
      {"DefineDosDeviceW", 1, {{0, DDD_RAW_TARGET_PATH}}, {{1, L"COM19"}, {2, Port().port->kernelDevice}}},
      {"RegSetValueExW", 0, {{3, REG_SZ}, {5, 12}}, {{1, Port().port->kernelDevice}}},
      {"RegSetValueExW", 1, {{3, REG_SZ}, {5, 10}}, {{1, L"PortName"}}},
      {"RegSetValueExW", 2, {{3, REG_SZ}, {5, 22}}, {{1, L"COM19:"}}},
      {"SetupDiSetDeviceRegistryPropertyW", 0, {{4, sizeof L"Veltranet Serial Port (COM19)"}}, {}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(std::string(row.function) + " " + std::to_string(row.call));
    const auto calls = machine.Calls().CallsOf(row.function);
    ASSERT_GT(calls.size(), row.call);
    for (const auto& [at, number] : row.numbers) EXPECT_EQ(calls[row.call].Number(at), number) << at;
    for (const auto& [at, text] : row.texts) EXPECT_EQ(calls[row.call].Text(at), text) << at;
  }
}

TEST(InstallRenameQuestions, TakenNamesAndOpenPortsAreAskedAbout) {
  const struct {
    const char* what;
    const wchar_t* newName;
    std::vector<int> answers;
    Texts questions;
    const wchar_t* name;  // in the end
    bool isOpen = false;  // the port, elsewhere
    bool opens = true;    // the database
  } cases[] = {
      {"a taken name, declined, which is not reported", L"COM8", {IDNO}, {kNameTaken}, L"COM5"},
      {"a taken name", L"COM8", {IDYES}, {kNameTaken}, L"COM8"},
      {"its own name", L"COM5", {IDYES}, {kNameTaken}, L"COM5"},
      {"an open port, declined", L"COM8", {IDNO}, {kPortOpen}, L"COM5", true},
      {"an open port and a taken name", L"COM8", {IDYES, IDYES}, {kPortOpen, kNameTaken}, L"COM8", true},
      {"without the database every name is taken", L"COM9", {IDYES}, {kNameTaken}, L"COM9", false, false},
      {"the last number of the database", L"COM256", {}, {}, L"COM256"},
      {"a number behind it", L"COM257", {IDYES}, {kNameTaken}, L"COM257"},
      {"number 0", L"COM0", {IDYES}, {kNameTaken}, L"COM0"},
      {"no number", L"LPTx", {IDYES}, {kNameTaken}, L"LPTx"},
      {"a negative number", L"COM-3", {IDYES}, {kNameTaken}, L"COM-3"},
      {"too great a number", L"COM99999999999", {IDYES}, {kNameTaken}, L"COM99999999999"},
      {"something behind the number", L"COM12x", {}, {}, L"COM12x"},
      {"no name at all", nullptr, {IDNO}, {kNameTaken}, L"COM5"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    RenameHost host;
    AddForeignPort(host.machine, 8);
    host.Port().port->openElsewhere = row.isOpen;
    if (!row.opens) host.machine.ComNames().openError = ERROR_ACCESS_DENIED;
    for (const int answer : row.answers) host.machine.Screen().Answer(answer);
    EXPECT_EQ(host.Rename(row.newName), 1);
    EXPECT_EQ(host.Questions(), row.questions);
    for (const auto& box : host.Boxes()) {
      EXPECT_EQ(box.caption, L"Error");
      EXPECT_EQ(box.style, static_cast<UINT>(MB_YESNO | MB_ICONINFORMATION));
      EXPECT_EQ(box.owner, nullptr);
    }
    const std::wstring name = host.NameOf(host.Port());
    EXPECT_EQ(name, row.name);
    EXPECT_THAT(host.machine.DosNames().NamesOf(host.Port().port->kernelDevice), ElementsAre(name));
    EXPECT_EQ(host.machine.ComNames().IsClaimed(5), name == L"COM5" || !row.opens);
    EXPECT_TRUE(host.machine.ComNames().IsClaimed(8));
  }
}

TEST(InstallRenameUsb, OnlyModelsThatTakeTheirNumberTakeATakenNameUnasked) {
  for (const bool asks : {false, true}) {
    RenameHost host;
    AddForeignPort(host.machine, 8);
    const Device& port =
        *AddUsbDevice(
             host.machine,
             {.hardwareId = asks ? L"USB\\VID_3A7E&PID_1089" : L"USB\\VID_3A7E&PID_1015", .comNumber = 20})
             .port;
    EXPECT_EQ(host.dll->ChangeComNumber(port.instanceId.c_str(), L"COM8"), 1);
    EXPECT_EQ(host.Questions(), asks ? Texts{kNameTaken} : Texts{});
    EXPECT_EQ(host.NameOf(port), asks ? L"COM20" : L"COM8");
    EXPECT_EQ(host.machine.ComNames().IsClaimed(20), asks);
    EXPECT_EQ(host.machine.Calls().CountOf("ComDBReleasePort"), asks ? 0u : 2u) << "the taken number too";
  }
}

TEST_F(InstallRename, FriendlyNameChangesWhereItHasTheOldName) {
  const std::wstring longName(500, L'x');
  const std::pair<std::wstring, std::wstring> cases[] = {
      {L"COM5 and COM5 (COM5)", L"COM6 and COM6 (COM6)"},
      {L"No name in it", L"No name in it"},
      {L"COM55", L"COM65"},
      {longName + L" (COM5)", longName + L" (COM6)"},
  };
  const std::wstring key = workbench::EnumKeyOf(Port().instanceId);
  for (const auto& [before, after] : cases) {
    machine.Registry().SetText(key, L"FriendlyName", before);
    EXPECT_EQ(Rename(L"COM6"), 1);
    EXPECT_EQ(machine.Registry().Text(key, L"FriendlyName"), after);
    EXPECT_EQ(Rename(L"COM5"), 1);
  }
}

// A value is read when 149 characters and a terminator, or less, are there.
TEST_F(InstallRename, TooLongPortNamesCountAsAbsent) {
  const std::wstring name = L"COM5" + std::wstring(145, L'x');  // 149 characters
  machine.DosNames().Define(name, Port().port->kernelDevice);
  SetPortName(REG_SZ, name + L'x');  // 300 bytes, no terminator
  Rename(L"COM9");
  SetPortName(REG_SZ, name + L"xx");
  Rename(L"COM9");
  EXPECT_EQ(machine.Calls().CountOf("CreateFileW"), 0u) << "no port of that name is tried";
  SetPortName(REG_BINARY, name);  // no terminator, and another type
  Rename(L"COM9");
  EXPECT_EQ(NameOf(Port()), L"COM9");
}

TEST(InstallRenameSteps, AFailedStepLeavesTheStepsBeforeIt) {
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
  for (const auto& row : cases) {
    SCOPED_TRACE(row.function + std::to_string(row.from));
    RenameHost host(30);
    host.machine.Calls().Inject({.function = row.function, .from = row.from});
    EXPECT_EQ(host.Rename(L"COM31"), 1);
    EXPECT_THAT(host.machine.DosNames().NamesOf(host.Port().port->kernelDevice),
                ElementsAre(row.dosMoved ? L"COM31" : L"COM30"));
    EXPECT_EQ(host.machine.ComNames().IsClaimed(31), row.claimMoved);
    EXPECT_EQ(host.machine.ComNames().IsClaimed(30), !row.claimMoved);
    EXPECT_EQ(host.NameOf(host.Port()), row.nameMoved ? L"COM31" : L"COM30");
  }
}

TEST_F(InstallRename, WithoutTheMapOnlyTheDosDeviceIsMoved) {
  machine.Registry().DeleteKey(workbench::kSerialCommKey);
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_THAT(machine.DosNames().NamesOf(Port().port->kernelDevice), ElementsAre(L"COM9"));
  EXPECT_THAT(machine.ComNames().Claimed(), ElementsAre(5));
  EXPECT_EQ(NameOf(Port()), L"COM5");
}

}  // namespace
