// Settings and names of ports across a reinstallation of their device server.
#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// A computer with a device server that is installed again.
class BackupHost : public InstallHost {
 public:
  explicit BackupHost(const std::vector<unsigned>& comNumbers = {5}) { AddServer(comNumbers); }
  workbench::RegistrySandbox& Registry() { return machine.Registry(); }
  [[nodiscard]] std::wstring Key(unsigned port = 0) { return Parameters(Port(port)); }
  [[nodiscard]] std::optional<std::uint32_t> BaudRate(unsigned port = 0) {
    return Registry().Dword(Key(port), L"Baudrate");
  }
  void SetSettings(unsigned port, std::uint32_t baudRate) {
    Registry().SetDword(Key(port), L"Baudrate", baudRate);
    Registry().SetDword(Key(port), L"BaudRatesSupported", 0xFFFF);
    Registry().SetText(Key(port), L"Comment", L"not a setting");
    Registry().SetDword(Key(port) + L"\\UI1", L"Help", 7);
    Registry().SetText(Key(port) + L"\\UI1", L"Last", L"page");
  }
  // The installation of the server, with its bus finding the ports again on other numbers.
  void Reinstall(std::vector<unsigned> newNumbers) {
    EXPECT_EQ(installer.Install(*server.card), static_cast<DWORD>(NO_ERROR));
    wanted.comNumbers = std::move(newNumbers);
    FindPortsAgain(machine, server, wanted);
  }
};

class InstallBackup : public testing::Test, public BackupHost {};

TEST(InstallBackupOfTwo, SettingsAndNamesComeBack) {
  BackupHost host({5, 6});
  host.SetSettings(0, 115200);
  host.SetSettings(1, 300);
  const std::wstring backup = BackupKeyOf(host.Port());
  host.Reinstall({11, 10});
  EXPECT_THAT(host.Registry().ValueNames(backup),
              UnorderedElementsAre(L"Baudrate", L"BaudRatesSupported", L"PortName"));
  EXPECT_THAT(host.Registry().ValueNames(backup + L"\\UI1"), UnorderedElementsAre(L"Help", L"Last"));
  EXPECT_THAT(host.machine.ComNames().Claimed(), ElementsAre(10, 11)) << "5 and 6 were given back";
  host.Registry().SetDword(host.Key(), L"BaudRatesSupported", 1);
  host.InstallAll();

  EXPECT_THAT(host.PortNames(), ElementsAre(L"COM5", L"COM6"));
  host.ExpectAgreement();
  EXPECT_THAT(host.machine.ComNames().Claimed(), ElementsAre(5, 6));
  EXPECT_EQ(host.BaudRate(0), 115200u);
  EXPECT_EQ(host.BaudRate(1), 300u);
  EXPECT_EQ(host.Registry().Dword(host.Key(0), L"BaudRatesSupported"), 1u);
  EXPECT_FALSE(host.Registry().Dword(host.Key(1), L"BaudRatesSupported"));
  EXPECT_FALSE(host.Registry().Text(host.Key(0), L"Comment"));
  EXPECT_EQ(host.Registry().Dword(host.Key(0) + L"\\UI1", L"Help"), 7u);
  EXPECT_EQ(host.Registry().Text(host.Key(1) + L"\\UI1", L"Last"), L"page");
  EXPECT_THAT(host.Restarts(), IsEmpty()) << "restored ports are not sorted";
  EXPECT_FALSE(host.Registry().Dword(host.Parameters(*host.server.card), L"ChildPortNameSorted"));
}

TEST_F(InstallBackup, ABackupGoesUnlessItHasPageValues) {
  const std::wstring backup = BackupKeyOf(Port());
  Registry().SetDword(Key(), L"Baudrate", 300);
  Reinstall({8});
  ASSERT_TRUE(Registry().HasKey(backup));
  InstallAll();
  EXPECT_FALSE(Registry().HasKey(backup));

  SetSettings(0, 600);
  Reinstall({8});
  InstallAll();
  EXPECT_TRUE(Registry().HasKey(backup));
  Registry().SetDword(Key(), L"Baudrate", 1200);
  InstallAll();
  EXPECT_EQ(BaudRate(), 600u) << "restored again";
}

TEST_F(InstallBackup, TheNumberThatThePortStillHoldsIsClaimedAgainUnasked) {
  Reinstall({5});
  Port().port->openElsewhere = true;
  machine.Calls().ClearLog();
  InstallAll();
  EXPECT_THAT(PortNames(), ElementsAre(L"COM5"));
  ExpectAgreement();
  EXPECT_THAT(Questions(), IsEmpty());
  EXPECT_THAT(machine.Calls().OrderOf({"ComDBReleasePort", "ComDBClaimPort"}),
              ElementsAre("ComDBReleasePort", "ComDBReleasePort", "ComDBClaimPort"));
}

TEST_F(InstallBackup, AUsbPortIsRestoredAndThenTakesItsFixedNumber) {
  const auto made = AddUsbDevice(machine, {.hardwareId = L"USB\\VID_3A7E&PID_1015", .comNumber = 9});
  Registry().SetDword(Parameters(*made.usb) + L"\\KDUSB_T_5&1A2B3C4D&0&1&00", L"Baudrate", 2400);
  installer.Install(*made.port);
  EXPECT_EQ(Registry().Dword(Parameters(*made.port), L"Baudrate"), 2400u);
  EXPECT_EQ(NameOf(*made.port), L"COM2");
}

TEST_F(InstallBackup, OddValuesComeBackAsNumbersAndTextsOrNotAtAll) {
  using Bytes = std::string;
  const std::wstring longName(16383, L'n');
  const Bytes longText(2 * 5000, 't');
  const Bytes end({'\0', '\0'});
  const struct {
    std::wstring subkey, name;
    DWORD type;
    Bytes bytes;
    std::optional<Bytes> restored;
  } cases[] = {
      {L"", longName, REG_DWORD, {"\x4D\0\0\0", 4}, Bytes("\x4D\0\0\0", 4)},
      {L"", L"Short", REG_DWORD, "\x05\x01", Bytes("\x05\x01\0\0", 4)},
      {L"", L"Long", REG_DWORD, {"\1\0\0\0\0\0\0\0", 8}, std::nullopt},
      {L"", L"Qword", REG_QWORD, {"\1\0\0\0\0\0\0\0", 8}, std::nullopt},
      {L"", L"", REG_DWORD, {"\3\0\0\0", 4}, Bytes("\3\0\0\0", 4)},
      {L"\\UI1", L"Long", REG_SZ, longText + end, longText + end},
      {L"\\UI1", L"Open", REG_SZ, {"e\0n\0d\0", 6}, Bytes("e\0n\0d\0\0\0", 8)},
      {L"\\UI1", L"Many", REG_MULTI_SZ, {"a\0\0\0\0\0", 6}, std::nullopt},
  };
  for (const auto& row : cases)
    Registry().SetRaw(Key() + row.subkey, row.name, row.type, row.bytes.data(),
                      static_cast<DWORD>(row.bytes.size()));
  Reinstall({8});
  InstallAll();
  for (const auto& row : cases) {
    const auto raw = Registry().Raw(Key() + row.subkey, row.name);
    ASSERT_EQ(raw.has_value(), row.restored.has_value()) << row.name.substr(0, 20);
    if (!raw) continue;
    EXPECT_EQ(raw->type, row.type) << row.name.substr(0, 20);
    EXPECT_EQ(Bytes(raw->data.begin(), raw->data.end()), *row.restored) << row.name.substr(0, 20);
  }
}

}  // namespace
