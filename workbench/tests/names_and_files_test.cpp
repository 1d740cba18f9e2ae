// What opens of COM ports and drivers are refused with, and a registry that is gone afterwards.
#include <gmock/gmock.h>

#include "workbench/tests/probe_dll.h"

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(ComPortsOfMachine, OpenOnlyOnceAndOnlyWhenTheyAreThere) {
  Machine machine;
  const DeviceServer server = AddDeviceServer(machine, {.comNumbers = {7, 8}});
  const ProbeDll probe(machine);
  const HANDLE open = probe.OpenFile(L"\\\\.\\COM7");
  ASSERT_NE(open, INVALID_HANDLE_VALUE);
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::ComPortFile), 1u);
  const auto refusal = [&](const wchar_t* path) {
    EXPECT_EQ(probe.OpenFile(path), INVALID_HANDLE_VALUE);
    return GetLastError();
  };
  EXPECT_EQ(refusal(L"\\\\.\\COM7"), static_cast<DWORD>(ERROR_ACCESS_DENIED));
  EXPECT_TRUE(probe.CloseFile(open));
  EXPECT_TRUE(probe.CloseFile(probe.OpenFile(L"\\\\.\\com7")));
  server.ports[1]->port->openElsewhere = true;
  EXPECT_EQ(refusal(L"\\\\.\\COM8"), static_cast<DWORD>(ERROR_ACCESS_DENIED));
  EXPECT_EQ(refusal(L"\\\\.\\COM9"), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
  EXPECT_THAT(machine.Calls().OpenHandles(), IsEmpty());
  EXPECT_THAT(machine.Calls().Violations(), IsEmpty());
  EXPECT_FALSE(probe.CloseFile(open));
  EXPECT_THAT(machine.Calls().Violations(), ElementsAre(HasSubstr("CloseHandle: not an open handle")));
}

// Takes every request, and refuses code 13.
class SomeDriver : public DriverEndpoint {
 public:
  DWORD Open(std::uint64_t, const DriverOpen&) override { return openError; }
  DriverAnswer Control(std::uint64_t, const DriverRequest& request) override {
    return {.error = request.code == 13 ? DWORD{ERROR_NOT_SUPPORTED} : DWORD{ERROR_SUCCESS}};
  }
  void Close(std::uint64_t) override {}

  DWORD openError = ERROR_SUCCESS;
};

TEST(DriversOfMachine, RefusalsReachTheCaller) {
  Machine machine;
  SomeDriver driver;
  const DeviceServer server =
      AddDeviceServer(machine, {.comNumbers = {7}, .driver = [&](unsigned) { return &driver; }});
  const ProbeDll probe(machine);
  const std::wstring path = server.ports[0]->interfaces.at(0)->path;
  const HANDLE file = probe.OpenFile(path);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD returned = 77;
  const auto control = [&](DWORD code, DWORD* count) {
    return probe.Call<BOOL(HANDLE, DWORD, DWORD*)>("ControlFile", file, code, count);
  };
  EXPECT_TRUE(control(1, &returned));
  EXPECT_EQ(returned, 0u);
  EXPECT_FALSE(control(13, &returned));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_SUPPORTED));
  EXPECT_FALSE(control(1, nullptr));
  EXPECT_THAT(machine.Calls().Violations(), ElementsAre(HasSubstr("Windows would crash")));
  EXPECT_TRUE(probe.CloseFile(file));
  driver.openError = ERROR_BUSY;
  EXPECT_EQ(probe.OpenFile(path), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_BUSY));
  EXPECT_THAT(machine.Calls().OpenHandles(), IsEmpty());
}

TEST(RegistryOfMachine, IsItsOwnAndGoneAfterwards) {
  constexpr wchar_t kKey[] = L"Software\\Keldrin\\Deep\\Key";
  const auto isThere = [](HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    const bool found = RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS;
    if (found) RegCloseKey(key);
    return found;
  };
  {
    Machine machine;
    machine.Registry().SetText(kKey, L"Value", L"text");
    EXPECT_TRUE(isThere(HKEY_LOCAL_MACHINE, kKey));
    EXPECT_EQ(machine.Registry().Text(kKey, L"value"), L"text");
  }
  EXPECT_FALSE(isThere(HKEY_LOCAL_MACHINE, kKey));
  // What Windows' own libraries read stays for the next machine of the process, and nothing else.
  const std::wstring scratch = L"Software\\KdWorkbench\\" + std::to_wstring(GetCurrentProcessId());
  EXPECT_FALSE(isThere(HKEY_CURRENT_USER, scratch + L"\\Machine\\Software"));
  Machine next;
  EXPECT_FALSE(next.Registry().HasKey(L"Software\\Keldrin"));
}

}  // namespace
}  // namespace workbench
