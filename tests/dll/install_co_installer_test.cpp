// The co-installer entry points: what each function does in each pass, and what it returns.
#include <thread>

#include "base/unique_handle.h"
#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t kInstallMutex[] = L"{5C0E2A71-93B4-4F6D-A8E2-0B7D41C9E356}";

class InstallCoInstaller : public InstallTest {
 protected:
  [[nodiscard]] bool TouchedNothing() {
    return machine.Calls().OrderOf({"CreateMutexW", "RegSetValueExW", "ComDBOpen"}).empty();
  }
};

TEST_F(InstallCoInstaller, FunctionsThatAreNotItsBusinessAreLeftAlone) {
  AddServer({5});
  for (const DI_FUNCTION function : {0u, 1u, 3u, 4u, 0x12u, 0x17u, 0x28u, 0x2Au, 0xFFFFFFFFu}) {
    for (const bool post : {false, true}) {
      EXPECT_EQ(Call(*server.card, function, post, 7), static_cast<DWORD>(NO_ERROR)) << function;
      EXPECT_EQ(Call(Port(), function, post, 7), static_cast<DWORD>(NO_ERROR)) << function;
    }
  }
  EXPECT_TRUE(TouchedNothing());
}

TEST_F(InstallCoInstaller, InstallingAsksForASecondPassAndHandsItsResultOn) {
  AddServer({5});
  EXPECT_EQ(Call(Port(), DIF_INSTALLDEVICE, false), ERROR_DI_POSTPROCESSING_REQUIRED);
  EXPECT_TRUE(TouchedNothing());
  EXPECT_EQ(Call(Port(), DIF_INSTALLDEVICE, true, 1234), 1234u);
  const std::wstring backup = BackupKeyOf(Port());
  EXPECT_EQ(Call(*server.card, DIF_INSTALLDEVICE, false), ERROR_DI_POSTPROCESSING_REQUIRED);
  EXPECT_TRUE(Port().removed);
  // The class installer starts the server, whose bus finds the port again; what was saved stays.
  wanted.comNumbers = {8};
  FindPortsAgain(machine, server, wanted);
  EXPECT_EQ(Call(*server.card, DIF_INSTALLDEVICE, true), static_cast<DWORD>(NO_ERROR));
  EXPECT_TRUE(Port().removed);
  EXPECT_FALSE(machine.ComNames().IsClaimed(8));
  EXPECT_EQ(machine.Registry().Text(backup, L"PortName"), L"COM5");
  EXPECT_EQ(Call(*server.card, DIF_INSTALLDEVICE, true, 1234), 1234u);
}

TEST_F(InstallCoInstaller, ExportsWithoutAnArgumentDoNothing) {
  AddServer({5});
  workbench::DeviceElement card(machine, *server.card);
  workbench::DeviceElement port(machine, Port());
  COINSTALLER_CONTEXT_DATA context{};
  for (const auto& [coInstaller, element] :
       {std::pair{dll->CoInstallCard, &card}, std::pair{dll->CoInstallPort, &port}}) {
    for (const DI_FUNCTION function : {DIF_INSTALLDEVICE, DIF_REMOVE, DIF_UPDATEDRIVER_UI}) {
      EXPECT_EQ(coInstaller(function, element->Set(), nullptr, &context), static_cast<DWORD>(NO_ERROR));
    }
    EXPECT_EQ(coInstaller(DIF_INSTALLDEVICE, element->Set(), element->Data(), nullptr),
              static_cast<DWORD>(NO_ERROR));
  }
  for (const wchar_t* id : {static_cast<const wchar_t*>(nullptr), L"", L"KDNBUS\\NOBODY\\1"}) {
    EXPECT_EQ(dll->ChangeComNumber(id, L"COM9"), 0);
  }
  EXPECT_EQ(dll->ChangeComNumber(nullptr, nullptr), 0);
  EXPECT_EQ(dll->UpdateDriver(nullptr, L"C:\\kd.inf"), FALSE);
  EXPECT_EQ(dll->UpdateDriver(L"KDNBUS\\VELTRANETPORT", nullptr), FALSE);
  EXPECT_THAT(machine.System().driverUpdates, IsEmpty());
  EXPECT_TRUE(TouchedNothing());
  ExpectAgreement();
}

TEST_F(InstallCoInstaller, DriverUpdateIsRefusedWithAMessageForTheNumberOne) {
  AddServer({5});
  for (Device* device : {server.card, &Port()}) {
    machine.Registry().SetText(Parameters(*device), L"NoUpgrade", L"2");
    EXPECT_TRUE(installer.AllowsDriverUpdate(*device));
    EXPECT_THAT(Questions(), IsEmpty());
    machine.Registry().SetText(Parameters(*device), L"NoUpgrade", L"1");
    EXPECT_EQ(Call(*device, DIF_UPDATEDRIVER_UI, false), ERROR_DI_DONT_INSTALL);
    EXPECT_EQ(Call(*device, DIF_UPDATEDRIVER_UI, true), ERROR_DI_DONT_INSTALL);
    const auto isRefusal = testing::StartsWith(L"Please update the Keldrin Veltranet driver");
    EXPECT_THAT(Questions(), ElementsAre(isRefusal, isRefusal));
    EXPECT_EQ(Boxes()[0].caption, L"Veltranet");
    EXPECT_EQ(Boxes()[0].style, static_cast<UINT>(MB_OK | MB_ICONERROR));
    EXPECT_EQ(Boxes()[0].owner, nullptr);
    Boxes().clear();
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
  EXPECT_THAT(machine.System().processes, ElementsAre(std::wstring(directory) + L"\\KdUninst.exe"));
  const workbench::Call start = machine.Calls().CallsOf("CreateProcessW").at(0);
  EXPECT_EQ(start.Number(1), 0u) << "no command line";
  EXPECT_EQ(start.Number(4), 1u) << "it inherits handles";
  EXPECT_EQ(start.Number(5), static_cast<std::uint64_t>(NORMAL_PRIORITY_CLASS));
  EXPECT_EQ(machine.Calls().CountOf("WaitForSingleObject"), 0u);
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Thread), 0u);
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Process), 1u) << "the program's handle is kept";
}

TEST_F(InstallCoInstaller, RemovingAPortGivesItsNameBackIfItsDosDeviceGoes) {
  AddServer({5, 6, 7});
  EXPECT_EQ(installer.Remove(Port(0)), static_cast<DWORD>(NO_ERROR));
  EXPECT_EQ(machine.DosNames().Target(L"COM5"), L"");
  EXPECT_EQ(machine.Calls().CallsOf("DefineDosDeviceW").at(0).Number(0), 7u) << "its own definition only";
  machine.DosNames().Remove(L"COM6", L"", false);
  EXPECT_EQ(Call(Port(1), DIF_REMOVE, false), static_cast<DWORD>(NO_ERROR));
  machine.Calls().Inject({.function = "DefineDosDeviceW"});
  EXPECT_EQ(Call(Port(2), DIF_REMOVE, true), static_cast<DWORD>(NO_ERROR));
  EXPECT_THAT(machine.ComNames().Claimed(), ElementsAre(6, 7));
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
  EXPECT_EQ(Call(Port(), DIF_INSTALLDEVICE, true), static_cast<DWORD>(NO_ERROR));
  EXPECT_EQ(PlacesOf(machine, Port()).portsValue, L"9600,n,8,1");
  EXPECT_EQ(machine.Calls().CallsOf("CreateMutexW").at(0).Text(2), kInstallMutex);
  EXPECT_EQ(machine.Calls().CallsOf("WaitForSingleObject").at(0).Number(1) & 0xFFFFFFFFu, INFINITE);
  EXPECT_THAT(machine.Calls().OrderOf({"QueryDosDeviceW", "CreateMutexW", "WaitForSingleObject",
                                       "RegOpenKeyExW", "RegCreateKeyExW", "ReleaseMutex"}),
              ElementsAre("QueryDosDeviceW", "CreateMutexW", "WaitForSingleObject", "RegOpenKeyExW",
                          "RegCreateKeyExW", "ReleaseMutex"));
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::Mutex), 1u);
}

// A thread that ends with the mutex stands for an installer that ended in the middle of a step.
TEST_F(InstallCoInstaller, TheMutexOfAnInstallerThatEndedIsTakenAndGivenBack) {
  AddServer({5});
  const CKernelHandle mutex(CreateMutexW(nullptr, FALSE, kInstallMutex));
  std::thread([&] { WaitForSingleObject(mutex.Get(), INFINITE); }).join();
  EXPECT_EQ(Call(Port(), DIF_INSTALLDEVICE, true), static_cast<DWORD>(NO_ERROR));
  EXPECT_EQ(machine.Calls().CountOf("ReleaseMutex"), 1u);
}

TEST_F(InstallCoInstaller, DriverUpdatePassesItsArgumentsOn) {
  AddServer({5});
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
