// Functions of DLLs that are loaded when they are first needed: from where, and where the DLL cannot be
// loaded.
#include "install_test.h"

namespace {

class ModuleDelayLoad : public InstallTest {
 protected:
  ModuleDelayLoad() { AddServer({5}); }
  bool RenameClaims(unsigned number) {
    dll->ChangeComNumber(Port().instanceId.c_str(), (L"COM" + std::to_wstring(number)).c_str());
    return machine.ComNames().IsClaimed(number);
  }
};

// A library of that name in the current directory, or beside the host, is not the system's.
TEST_F(ModuleDelayLoad, LibrariesAreThoseOfTheSystemDirectory) {
  EXPECT_TRUE(RenameClaims(9));
  wchar_t system[MAX_PATH] = {};
  GetSystemDirectoryW(system, MAX_PATH);
  EXPECT_GT(machine.Calls().CountOf("LoadLibraryExW"), 0u);
  for (const workbench::Call& load : machine.Calls().CallsOf("LoadLibraryExW")) {
    EXPECT_TRUE(load.Text(0).starts_with(std::wstring(system) + L'\\')) << load.detail;
  }
}

TEST_F(ModuleDelayLoad, WithoutTheComDatabaseEveryNumberCountsAsTakenUntilItLoads) {
  machine.Calls().Inject({.function = "LoadLibraryExW", .count = Fault::kEveryLater});
  EXPECT_FALSE(RenameClaims(9));
  EXPECT_THAT(Questions(), testing::ElementsAre(kNameTaken));
  machine.Calls().ClearFaults();
  EXPECT_TRUE(RenameClaims(10));
}

}  // namespace
