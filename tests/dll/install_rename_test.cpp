// Renaming a port: the five places, the questions, and what a failing step leaves behind.
#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::wstring>;

// A computer with one port.
class RenameHost : public InstallHost {
 public:
  RenameHost() { AddServer({5}); }
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
// friendly name is written with it.
TEST_F(InstallRename, NamesAreWrittenWithTheirSizes) {
  Rename(L"COM19");
  const workbench::Call name = machine.Calls().CallsOf("RegSetValueExW").at(1);
  EXPECT_EQ(name.Text(1), L"PortName");
  EXPECT_EQ(name.Number(5), 10u);
  EXPECT_EQ(machine.Calls().CallsOf("SetupDiSetDeviceRegistryPropertyW").at(0).Number(4),
            sizeof L"Veltranet Serial Port (COM19)");
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

TEST_F(InstallRename, ANameThatCannotBeDefinedLeavesTheOldOne) {
  machine.Calls().Inject({.function = "DefineDosDeviceW", .from = 2});
  EXPECT_EQ(Rename(L"COM9"), 1);
  ExpectAgreement();
  EXPECT_EQ(NameOf(Port()), L"COM5");
}

TEST_F(InstallRename, WithoutTheMapOnlyTheDosDeviceIsMoved) {
  machine.Registry().DeleteKey(workbench::kSerialCommKey);
  EXPECT_EQ(Rename(L"COM9"), 1);
  EXPECT_THAT(machine.DosNames().NamesOf(Port().port->kernelDevice), ElementsAre(L"COM9"));
  EXPECT_THAT(machine.ComNames().Claimed(), ElementsAre(5));
  EXPECT_EQ(NameOf(Port()), L"COM5");
}

}  // namespace
