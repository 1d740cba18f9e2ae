// The platform's device installer with the example INF files: copies the DLL, writes its entries, loads it
// for every step of an installation and asks its co-installers.
#include <windows.h>

#include <setupapi.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <future>

#include "client.h"
#include "root_device.h"

namespace {

namespace fs = std::filesystem;

constexpr GUID kMultiportClass = {
    0x50906CB8, 0xBA12, 0x11D1, {0xBF, 0x5D, 0x00, 0x00, 0xF8, 0x05, 0xF5, 0x30}};

// A folder with a driver package: the INF files, the DLL, and files that stand for the drivers.
fs::path MakePackage() {
  const fs::path folder = fs::temp_directory_path() / L"kdui10-package";
  fs::remove_all(folder);
  fs::create_directories(folder);
  for (const wchar_t* inf : {L"kdui10-example.inf", L"kdui10-example-port.inf"}) {
    fs::copy_file(ProgramFolder() / L"examples" / inf, folder / inf);
  }
  fs::copy_file(ProgramFolder() / L"KdUUI10.DLL", folder / L"KdUUI10.DLL");
  for (const wchar_t* driver : {L"kdnbus.sys", L"kdvcp.sys"}) std::ofstream(folder / driver) << "no driver";
  return folder;
}

// What the co-installers have answered, as the installer saw it, except the first `earlier` answers.
std::vector<std::string> Answers(std::size_t earlier = 0) {
  const std::string returned = " returned ";
  std::vector<std::string> answers = SetupTrace(returned);
  answers.erase(answers.begin(), answers.begin() + static_cast<std::ptrdiff_t>(earlier));
  for (std::string& line : answers) line.erase(0, line.find(returned) + returned.size());
  return answers;
}

bool WaitForFile(const fs::path& file) {
  for (int i = 0; i < 100 && !fs::exists(file); ++i) Sleep(100);
  return fs::exists(file);
}

// Answers the next message box of this process with OK and returns its text.
std::wstring AnswerMessageBox() {
  for (int i = 0; i < 200; ++i, Sleep(50)) {
    const HWND box = FindWindowW(L"#32770", L"Veltranet");
    if (!box) continue;
    wchar_t text[1024] = {};
    GetDlgItemTextW(box, 0xFFFF, text, 1024);
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    return text;
  }
  return {};
}

// The sections of an INF file's driver lead to its file and to a service whose name stands in [Strings].
void ExpectDriver(const std::wstring& service, const wchar_t* displayName) {
  const std::wstring key = L"SYSTEM\\CurrentControlSet\\Services\\" + service;
  EXPECT_EQ(RegistryText(HKEY_LOCAL_MACHINE, key, L"DisplayName"), displayName);
  EXPECT_TRUE(fs::exists(SystemFolder() / L"drivers" / (service + L".sys")));
}

TEST(DeviceInstaller, InstallsADeviceServerAndAsksItsCoInstaller) {
  SKIP_OUTSIDE_THROW_AWAY_PREFIX();
  const std::size_t earlier = Answers().size();
  const fs::path package = MakePackage();
  RootDevice server(kMultiportClass, L"VELTRANET", L"Root\\Veltranet");
  ASSERT_TRUE(server.IsMade());
  ASSERT_TRUE(Install(package / L"kdui10-example.inf", L"Root\\Veltranet")) << GetLastError();

  EXPECT_EQ(fs::file_size(SystemFolder() / L"KdUUI10.DLL"), fs::file_size(package / L"KdUUI10.DLL"));
  ExpectDriver(L"kdnbus", L"Veltranet Example Network Bus");
  EXPECT_EQ(server.Text(DIREG_DRV, L"CoInstallers32"), L"KdUUI10.DLL,KdUCoInstallCard");
  EXPECT_EQ(server.Text(DIREG_DEV, L"UnInstall"), L"kduninst.exe");
  // DIF_INSTALLDEVICE wants to be called again (0xe0000226); the steps around it are let through.
  EXPECT_THAT(Answers(earlier), testing::Contains("0xe0000226.").Times(1));
  EXPECT_THAT(Answers(earlier), testing::Contains("0.").Times(testing::Ge(1u)));

  EXPECT_EQ(GetModuleHandleW(L"KdUUI10.DLL"), nullptr) << "freed after every call";
  fs::copy_file(ProgramFolder() / L"kduninst.exe", SystemFolder() / L"kduninst.exe");
  server.Call(DIF_REMOVE);
  EXPECT_TRUE(WaitForFile(SystemFolder() / L"kduninst.exe.ran")) << "removal starts the uninstall program";
}

TEST(DeviceInstaller, InstallsAPortWithItsPageAndRefusesItsUpdate) {
  SKIP_OUTSIDE_THROW_AWAY_PREFIX();
  const std::size_t earlier = Answers().size();
  const fs::path package = MakePackage();
  RootDevice port(kPortsClass, L"KDPORT", L"KdNBus\\VeltranetPort");
  ASSERT_TRUE(port.IsMade());
  ASSERT_TRUE(Install(package / L"kdui10-example-port.inf", L"KdNBus\\VeltranetPort")) << GetLastError();

  ExpectDriver(L"kdvcp", L"Veltranet Example Serial Port");
  EXPECT_EQ(port.Text(DIREG_DRV, L"CoInstallers32"), L"KdUUI10.DLL,KdUCoInstallPort");
  EXPECT_EQ(port.Text(DIREG_DRV, L"EnumPropPages32"), L"KdUUI10.DLL,KdUPortPropPage");
  EXPECT_EQ(port.Text(DIREG_DEV, L"NoUpgrade"), L"1");
  EXPECT_THAT(Answers(earlier), testing::Contains("0xe0000226.").Times(1));

  auto message = std::async(std::launch::async, &AnswerMessageBox);
  port.Call(DIF_UPDATEDRIVER_UI);
  EXPECT_THAT(message.get(), testing::StartsWith(L"Please update the Keldrin Veltranet driver"));
  EXPECT_EQ(Answers().back(), "0xe000022b.");
}

}  // namespace
