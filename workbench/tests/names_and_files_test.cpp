// COM names, DOS devices, COM port opens and drivers of the simulated host.
#include <gmock/gmock.h>

#include <cstring>

#include "workbench/tests/probe_dll.h"

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(ComDatabaseOfMachine, KeepsItsBitsAndGrows) {
  Machine machine;
  ComDatabase& names = machine.ComNames();
  EXPECT_EQ(names.Ports(), 256u);
  names.Claim(1);
  names.Claim(256);
  EXPECT_THAT(names.Claimed(), ElementsAre(1u, 256u));
  names.Claim(257);
  EXPECT_EQ(names.Ports(), 264u);
  names.Claim(0);
  EXPECT_FALSE(names.IsClaimed(0));
  names.Release(1);
  names.Release(1);
  EXPECT_THAT(names.Claimed(), ElementsAre(256u, 257u));
}

TEST(DosDevicesOfMachine, AreStacksOfTargets) {
  DosDevices names;
  names.Define(L"COM9", L"\\Device\\First");
  names.Define(L"com9", L"\\Device\\Second");
  EXPECT_THAT(names.Targets(L"COM9"), ElementsAre(L"\\Device\\Second", L"\\Device\\First"));
  EXPECT_FALSE(names.Remove(L"COM9", L"\\Device\\Fir", true));
  EXPECT_TRUE(names.Remove(L"COM9", L"\\Device\\First", true));
  EXPECT_EQ(names.Target(L"COM9"), L"\\Device\\Second");
  EXPECT_TRUE(names.Remove(L"COM9", L"\\Device\\Sec", false));
  EXPECT_THAT(names.Names(), IsEmpty());
  EXPECT_FALSE(names.Remove(L"COM9", L"", false));
}

TEST(DosDevicesOfMachine, AreDefinedAndRemovedByTheDll) {
  Machine machine;
  const ProbeDll probe(machine);
  const auto define = [&](DWORD flags, const wchar_t* target) {
    return probe.Call<BOOL(DWORD, const wchar_t*, const wchar_t*)>("DefineName", flags, L"COM77", target);
  };
  EXPECT_TRUE(define(DDD_RAW_TARGET_PATH, L"\\Device\\KdPort0"));
  EXPECT_EQ(machine.DosNames().Target(L"COM77"), L"\\Device\\KdPort0");
  constexpr DWORD kRemove = DDD_RAW_TARGET_PATH | DDD_REMOVE_DEFINITION | DDD_EXACT_MATCH_ON_REMOVE;
  EXPECT_FALSE(define(kRemove, L"\\Device\\KdPort"));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
  EXPECT_TRUE(define(kRemove, L"\\Device\\KdPort0"));
  wchar_t target[16];
  EXPECT_EQ(probe.Query(L"COM77", target, 16), 0u);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

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

TEST(FilesOfMachine, RealFilesAreOpenedAndCounted) {
  Machine machine;
  const ProbeDll probe(machine);
  wchar_t path[MAX_PATH];
  GetTempPathW(MAX_PATH, path);
  const std::wstring name = path + std::wstring(L"kd_workbench_probe.txt");
  CloseHandle(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  const HANDLE file = probe.OpenFile(name);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::File), 1u);
  EXPECT_TRUE(probe.CloseFile(file));
  EXPECT_THAT(machine.Calls().OpenHandles(), IsEmpty());
  DeleteFileW(name.c_str());
}

// Answers every request with its own bytes in reverse, and refuses code 13.
class MirrorDriver : public DriverEndpoint {
 public:
  DWORD Open(std::uint64_t session, const DriverOpen& open) override {
    opened.push_back(open);
    sessions.push_back(session);
    return openError;
  }
  DriverAnswer Control(std::uint64_t session, const DriverRequest& request) override {
    EXPECT_EQ(session, sessions.back());
    if (request.code == 13) return {.error = ERROR_NOT_SUPPORTED, .returned = 0};
    const std::size_t count = std::min(request.input.size(), request.output.size());
    std::reverse_copy(request.input.begin(), request.input.begin() + static_cast<std::ptrdiff_t>(count),
                      request.output.begin());
    return {.returned = static_cast<DWORD>(count)};
  }
  void Close(std::uint64_t session) override { closed.push_back(session); }

  DWORD openError = ERROR_SUCCESS;
  std::vector<DriverOpen> opened;
  std::vector<std::uint64_t> sessions, closed;
};

TEST(DriversOfMachine, GetTheirRequests) {
  Machine machine;
  MirrorDriver driver;
  const DeviceServer server =
      AddDeviceServer(machine, {.comNumbers = {7}, .driver = [&](unsigned) { return &driver; }});
  const ProbeDll probe(machine);
  const std::wstring path = server.ports[0]->interfaces.at(0)->path;
  const HANDLE file = probe.OpenFile(path);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  EXPECT_EQ(driver.opened.at(0).access, GENERIC_READ | GENERIC_WRITE);
  EXPECT_EQ(driver.opened.at(0).flags, static_cast<DWORD>(FILE_FLAG_OVERLAPPED));
  char in[4] = {'a', 'b', 'c', 'd'};
  char out[8] = {};
  DWORD returned = 77;
  const auto control = [&](DWORD code, DWORD* count) {
    return probe.Call<BOOL(HANDLE, DWORD, void*, DWORD, void*, DWORD, DWORD*)>(
        "ControlFile", file, code, static_cast<void*>(in), DWORD{4}, static_cast<void*>(out), DWORD{8},
        count);
  };
  EXPECT_TRUE(control(1, &returned));
  EXPECT_EQ(returned, 4u);
  EXPECT_STREQ(out, "dcba");
  EXPECT_FALSE(control(13, &returned));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_SUPPORTED));
  EXPECT_FALSE(control(1, nullptr));
  EXPECT_THAT(machine.Calls().Violations(), ElementsAre(HasSubstr("Windows would crash")));
  EXPECT_TRUE(probe.CloseFile(file));
  EXPECT_EQ(driver.closed, driver.sessions);
  driver.openError = ERROR_BUSY;
  EXPECT_EQ(probe.OpenFile(path), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_BUSY));
  EXPECT_EQ(driver.closed.size(), 1u);
  EXPECT_EQ(probe.OpenFile(path + L"x"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
  EXPECT_THAT(machine.Calls().OpenHandles(), IsEmpty());
}

TEST(RegistryOfMachine, IsItsOwnAndGoneAfterwards) {
  {
    Machine machine;
    machine.Registry().SetText(L"Software\\Keldrin\\Deep\\Key", L"Value", L"text");
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Keldrin\\Deep\\Key", 0, KEY_READ, &key),
              ERROR_SUCCESS);
    RegCloseKey(key);
    EXPECT_EQ(machine.Registry().Text(L"Software\\Keldrin\\Deep\\Key", L"value"), L"text");
    EXPECT_EQ(machine.Registry().Dword(L"Software\\Keldrin\\Deep\\Key", L"Value"), std::nullopt);
  }
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Keldrin\\Deep\\Key", 0, KEY_READ, &key),
            ERROR_FILE_NOT_FOUND);
  // What Windows' own libraries read stays for the next machine of the process, and nothing else.
  const std::wstring scratch = L"Software\\KdWorkbench\\" + std::to_wstring(GetCurrentProcessId());
  EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, (scratch + L"\\Machine\\Software").c_str(), 0, KEY_READ, &key),
            ERROR_FILE_NOT_FOUND);
  Machine next;
  EXPECT_FALSE(next.Registry().HasKey(L"Software\\Keldrin"));
}

}  // namespace
}  // namespace workbench
