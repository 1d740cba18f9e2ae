// The co-installer entry points: what each function does in each pass, and what it returns.
#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t kUpdateTheCard[] =
    L"Please update the Keldrin Veltranet driver found under 'Multi-port serial adapters' in Device "
    L"Manager.\r\nThis will automatically initiate the port driver update.\r\n\r\nPlease see Product Manual "
    L"for further details.";

class InstallCoInstaller : public InstallTest {
 protected:
  DWORD Call(Device& device, DI_FUNCTION function, bool post, DWORD result = NO_ERROR) {
    COINSTALLER_CONTEXT_DATA context{};
    context.PostProcessing = post ? TRUE : FALSE;
    context.InstallResult = result;
    return installer.Call(device, function, context);
  }
  [[nodiscard]] bool TouchedNothing() {
    return machine.Calls().CountOf("CreateMutexW") + machine.Calls().CountOf("RegSetValueExW") +
               machine.Calls().CountOf("ComDBOpen") ==
           0;
  }
};

TEST_F(InstallCoInstaller, FunctionsThatAreNotItsBusinessAreLeftAlone) {
  AddServer({5});
  for (const DI_FUNCTION function : {0u, 1u, 3u, 4u, 0x12u, 0x17u, 0x28u, 0x2Au, 0xFFFFFFFFu}) {
    for (const bool post : {false, true}) {
      EXPECT_EQ(Call(*server.card, function, post, 7), static_cast<DWORD>(NO_ERROR)) << function;
      EXPECT_EQ(Call(*server.ports[0], function, post, 7), static_cast<DWORD>(NO_ERROR)) << function;
    }
  }
  EXPECT_TRUE(TouchedNothing());
}

TEST_F(InstallCoInstaller, InstallingAsksForASecondPassAndHandsItsResultOn) {
  AddServer({5});
  EXPECT_EQ(Call(*server.ports[0], DIF_INSTALLDEVICE, false), ERROR_DI_POSTPROCESSING_REQUIRED);
  EXPECT_TRUE(TouchedNothing());
  EXPECT_EQ(Call(*server.ports[0], DIF_INSTALLDEVICE, true, 1234), 1234u);
  EXPECT_EQ(Call(*server.card, DIF_INSTALLDEVICE, false), ERROR_DI_POSTPROCESSING_REQUIRED);
  EXPECT_TRUE(server.ports[0]->removed);
  // The class installer starts the server, whose bus finds the port again; what was saved stays.
  wanted.comNumbers = {8};
  FindPortsAgain(machine, server, wanted);
  const Device* found = server.ports[0];
  EXPECT_EQ(Call(*server.card, DIF_INSTALLDEVICE, true), static_cast<DWORD>(NO_ERROR));
  EXPECT_TRUE(found->removed);
  EXPECT_FALSE(machine.ComNames().IsClaimed(8));
  const std::wstring backup = Parameters(*server.card) + L"\\KDNBUS_T_1&2F8C1D3A&0&01";
  EXPECT_EQ(machine.Registry().Text(backup, L"PortName"), L"COM5");
  EXPECT_EQ(Call(*server.card, DIF_INSTALLDEVICE, true, 1234), 1234u);
}

TEST_F(InstallCoInstaller, NullsDoNothing) {
  AddServer({5});
  workbench::DeviceElement card(machine, *server.card);
  workbench::DeviceElement port(machine, *server.ports[0]);
  COINSTALLER_CONTEXT_DATA context{};
  for (const DI_FUNCTION function : {DIF_INSTALLDEVICE, DIF_REMOVE, DIF_UPDATEDRIVER_UI}) {
    EXPECT_EQ(dll->CoInstallCard(function, card.Set(), nullptr, &context), static_cast<DWORD>(NO_ERROR));
    EXPECT_EQ(dll->CoInstallPort(function, port.Set(), nullptr, &context), static_cast<DWORD>(NO_ERROR));
    EXPECT_EQ(dll->CoInstallCard(function, nullptr, nullptr, nullptr), static_cast<DWORD>(NO_ERROR));
    EXPECT_EQ(dll->CoInstallPort(function, nullptr, nullptr, nullptr), static_cast<DWORD>(NO_ERROR));
  }
  EXPECT_EQ(dll->CoInstallCard(DIF_INSTALLDEVICE, card.Set(), card.Data(), nullptr),
            static_cast<DWORD>(NO_ERROR));
  EXPECT_EQ(dll->CoInstallPort(DIF_INSTALLDEVICE, port.Set(), port.Data(), nullptr),
            static_cast<DWORD>(NO_ERROR));
  EXPECT_TRUE(TouchedNothing());
  ExpectAgreement();
}

TEST_F(InstallCoInstaller, DriverUpdateIsRefusedForTheNumberOneOnly) {
  AddServer({5});
  for (Device* device : {server.card, server.ports[0]}) {
    EXPECT_TRUE(installer.AllowsDriverUpdate(*device));
    for (const wchar_t* value : {L"2", L"", L"yes", L"11"}) {
      machine.Registry().SetText(Parameters(*device), L"NoUpgrade", value);
      EXPECT_TRUE(installer.AllowsDriverUpdate(*device)) << value;
    }
    EXPECT_THAT(Questions(), IsEmpty());
    for (const wchar_t* value : {L"1", L"01"}) {
      machine.Registry().SetText(Parameters(*device), L"NoUpgrade", value);
      EXPECT_EQ(Call(*device, DIF_UPDATEDRIVER_UI, false), ERROR_DI_DONT_INSTALL);
      EXPECT_EQ(Call(*device, DIF_UPDATEDRIVER_UI, true), ERROR_DI_DONT_INSTALL);
    }
    EXPECT_THAT(Questions(), testing::AllOf(testing::SizeIs(4), testing::Each(kUpdateTheCard)));
    EXPECT_EQ(machine.Screen().messageBoxes[0].caption, L"Veltranet");
    EXPECT_EQ(machine.Screen().messageBoxes[0].style, 0x10u);
    EXPECT_EQ(machine.Screen().messageBoxes[0].owner, nullptr);
    machine.Screen().messageBoxes.clear();
  }
}

TEST_F(InstallCoInstaller, RemovingAServerStartsItsUninstallProgram) {
  AddServer({});
  EXPECT_EQ(Call(*server.card, DIF_REMOVE, false), static_cast<DWORD>(NO_ERROR));
  EXPECT_THAT(machine.System().processes, IsEmpty());
  machine.Registry().SetText(Parameters(*server.card), L"UnInstall", L"KdUninst.exe");
  EXPECT_EQ(Call(*server.card, DIF_REMOVE, false), static_cast<DWORD>(NO_ERROR));
  wchar_t directory[MAX_PATH] = {};
  GetSystemDirectoryW(directory, MAX_PATH);
  ASSERT_EQ(machine.System().processes.size(), 1u);
  const workbench::ProcessRecord& process = machine.System().processes[0];
  EXPECT_EQ(process.application, std::wstring(directory) + L"\\KdUninst.exe");
  EXPECT_EQ(process.commandLine, L"");
  EXPECT_TRUE(process.inherit);
  EXPECT_EQ(process.flags, 0x20u);
  EXPECT_EQ(process.startupSize, 104u);
  EXPECT_EQ(machine.Calls().CountOf("WaitForSingleObject"), 0u);
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Thread), 0u);
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Process), 1u);

  machine.System().processError = ERROR_FILE_NOT_FOUND;
  EXPECT_EQ(Call(*server.card, DIF_REMOVE, true), static_cast<DWORD>(NO_ERROR));
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Process), 1u);
}

TEST_F(InstallCoInstaller, RemovingAPortGivesItsNameBack) {
  AddServer({5, 6, 7});
  EXPECT_EQ(installer.Remove(*server.ports[0]), static_cast<DWORD>(NO_ERROR));
  EXPECT_FALSE(machine.ComNames().IsClaimed(5));
  EXPECT_EQ(machine.DosNames().Target(L"COM5"), L"");
  const auto define = machine.Calls().CallsOf("DefineDosDeviceW").at(0);
  EXPECT_EQ(define.Number(0), 7u);

  machine.DosNames().Remove(L"COM6", L"", false);
  EXPECT_EQ(Call(*server.ports[1], DIF_REMOVE, false), static_cast<DWORD>(NO_ERROR));
  EXPECT_TRUE(machine.ComNames().IsClaimed(6)) << "its DOS device was gone";

  machine.Calls().Inject({.function = "DefineDosDeviceW"});
  EXPECT_EQ(Call(*server.ports[2], DIF_REMOVE, true), static_cast<DWORD>(NO_ERROR));
  EXPECT_TRUE(machine.ComNames().IsClaimed(7)) << "its DOS device could not be removed";
}

TEST_F(InstallCoInstaller, APortWhoseNameIsNotDefinedYetIsLeftAlone) {
  wanted.started = false;
  AddServer({5, 0});
  for (Device* port : server.ports) {
    EXPECT_EQ(Call(*port, DIF_INSTALLDEVICE, true, 1234), static_cast<DWORD>(NO_ERROR));
  }
  EXPECT_TRUE(TouchedNothing());
}

TEST_F(InstallCoInstaller, ANewPortGetsTheDefaultSettingsUnderTheMutex) {
  AddServer({5});
  machine.Registry().SetText(workbench::kPortsKey, L"COM5:", L"115200,e,7,2");
  EXPECT_EQ(Call(*server.ports[0], DIF_INSTALLDEVICE, true), static_cast<DWORD>(NO_ERROR));
  EXPECT_EQ(PlacesOf(machine, *server.ports[0]).portsValue, L"9600,n,8,1");
  const auto mutex = machine.Calls().CallsOf("CreateMutexW").at(0);
  EXPECT_EQ(mutex.Number(0), 0u);
  EXPECT_EQ(mutex.Number(1), 0u);
  EXPECT_EQ(mutex.Text(2), L"{5C0E2A71-93B4-4F6D-A8E2-0B7D41C9E356}");
  EXPECT_EQ(machine.Calls().CallsOf("WaitForSingleObject").at(0).Number(1) & 0xFFFFFFFFu, INFINITE);
  EXPECT_THAT(machine.Calls().OrderOf({"QueryDosDeviceW", "CreateMutexW", "WaitForSingleObject",
                                       "RegOpenKeyExW", "RegCreateKeyExW", "ReleaseMutex"}),
              ElementsAre("QueryDosDeviceW", "CreateMutexW", "WaitForSingleObject", "RegOpenKeyExW",
                          "RegCreateKeyExW", "ReleaseMutex"));
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Mutex), 1u);
}

TEST_F(InstallCoInstaller, WindowsVersionsThatSort) {
  const struct {
    DWORD major;
    DWORD minor;
    bool sorts;
  } cases[] = {{6, 0, false}, {6, 1, true}, {6, 3, true}, {7, 0, false}, {7, 1, false}, {10, 0, true}};
  unsigned number = 1;
  for (const auto& row : cases) {
    wanted.number = number++;
    AddServer({20 + 2 * number});
    machine.System().majorVersion = row.major;
    machine.System().minorVersion = row.minor;
    Call(*server.ports[0], DIF_INSTALLDEVICE, true);
    EXPECT_EQ(machine.Registry().Dword(Parameters(*server.card), L"ChildPortNameSorted").has_value(),
              row.sorts)
        << row.major << "." << row.minor;
    EXPECT_EQ(PlacesOf(machine, *server.ports[0]).portsValue, L"9600,n,8,1");
  }
  machine.System().versionCallFails = true;
  wanted.number = number;
  AddServer({99});
  Call(*server.ports[0], DIF_INSTALLDEVICE, true);
  EXPECT_FALSE(machine.Registry().Dword(Parameters(*server.card), L"ChildPortNameSorted"));
}

TEST_F(InstallCoInstaller, DriverUpdatePassesItsArgumentsOn) {
  AddServer({5});
  EXPECT_EQ(dll->UpdateDriver(nullptr, L"C:\\kd.inf"), FALSE);
  EXPECT_EQ(dll->UpdateDriver(L"KDNBUS\\VELTRANETPORT", nullptr), FALSE);
  EXPECT_THAT(machine.System().driverUpdates, IsEmpty());
  machine.System().updateNeedsReboot = true;
  EXPECT_EQ(dll->UpdateDriver(L"KDNBUS\\VELTRANETPORT", L"C:\\kd.inf"), TRUE);
  ASSERT_EQ(machine.System().driverUpdates.size(), 1u);
  const workbench::DriverUpdateRecord& update = machine.System().driverUpdates[0];
  EXPECT_EQ(update.owner, nullptr);
  EXPECT_EQ(update.hardwareId, L"KDNBUS\\VELTRANETPORT");
  EXPECT_EQ(update.infPath, L"C:\\kd.inf");
  EXPECT_EQ(update.flags, 1u);
  machine.System().updateError = ERROR_NO_SUCH_DEVINST;
  EXPECT_EQ(dll->UpdateDriver(L"KDNBUS\\VELTRANETPORT", L"C:\\kd.inf"), FALSE);
}

}  // namespace
