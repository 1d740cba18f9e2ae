#include "workbench/machine/gate/redirection.h"

#include <gmock/gmock.h>

#include "workbench/tests/probe_dll.h"

namespace workbench {
namespace {

TEST(Redirection, CatchesDelayLoadedImports) {
  Machine machine;
  const ProbeDll probe(machine);
  HANDLE database = nullptr;
  EXPECT_EQ(probe.Call<LONG(HANDLE*)>("OpenByDelayLoad", &database), ERROR_SUCCESS);
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::ComDatabase), 1u);
  EXPECT_EQ(probe.Call<LONG(HANDLE)>("CloseByDelayLoad", database), ERROR_SUCCESS);
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::ComDatabase), 0u);
  EXPECT_THAT(machine.Calls().Violations(), testing::IsEmpty());
}

TEST(Redirection, CatchesWhatIsLookedUpAtRunTime) {
  Machine machine;
  const ProbeDll probe(machine);
  using Query = DWORD(WINAPI*)(const wchar_t*, wchar_t*, DWORD);
  const auto query =
      reinterpret_cast<Query>(reinterpret_cast<AnyFunction>(probe.Find("kernel32.dll", "QueryDosDeviceW")));
  machine.DosNames().Define(L"COM3", L"\\Device\\A");
  wchar_t target[64] = {};
  EXPECT_NE(query(L"COM3", target, 64), 0u);
  EXPECT_STREQ(target, L"\\Device\\A");
  EXPECT_EQ(probe.Find("gdi32.dll", "ComDBOpen"), nullptr);
  EXPECT_NE(probe.Find("setupapi.dll", "SetupDiSelectDevice"), nullptr);
  EXPECT_NE(probe.Find("mapi32.dll", "MAPILogon"), nullptr);
  EXPECT_THAT(machine.Calls().Violations(),
              testing::ElementsAre(testing::HasSubstr("SetupDiSelectDevice is not simulated"),
                                   testing::HasSubstr("loads mapi32.dll from where it is found first")));
}

TEST(Redirection, PutsTheImportsBackWhenTheModuleStays) {
  Machine machine;
  const HMODULE kept = LoadLibraryW(L"redirect_probe.dll");
  ASSERT_NE(kept, nullptr);
  const auto slots = [&] {
    std::vector<AnyFunction> addresses;
    for (const ImportSlot& import : ImportsOf(kept)) addresses.push_back(*import.slot);
    return addresses;
  };
  const std::vector<AnyFunction> before = slots();
  {
    const ProbeDll probe(machine);
    EXPECT_NE(slots(), before);
  }
  EXPECT_EQ(slots(), before);
  FreeLibrary(kept);
}

}  // namespace
}  // namespace workbench
