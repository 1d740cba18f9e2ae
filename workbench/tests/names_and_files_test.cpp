// What opens of COM ports are refused with, and a registry that is gone afterwards.
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
  EXPECT_FALSE(probe.Call<BOOL(HANDLE)>("ControlWithoutCount", open));
  EXPECT_THAT(machine.Calls().Violations(),
              ElementsAre(HasSubstr("CloseHandle: not an open handle"), HasSubstr("Windows would crash")));
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
