// Functions of DLLs that are loaded when they are first needed, where the DLL cannot be loaded.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

#include "workbench/machine/builders.h"
#include "workbench/machine/dll.h"

namespace {

struct Rig {
  Rig() { machine.Calls().ClearLog(); }
  bool RenameClaims(unsigned number) {
    dll.ChangeComNumber(port.instanceId.c_str(), (L"COM" + std::to_wstring(number)).c_str());
    return machine.ComNames().IsClaimed(number);
  }
  void FailLoads(std::uint64_t count) {
    machine.Calls().Inject({.function = "LoadLibraryExW", .count = count});
  }

  workbench::Machine machine;
  workbench::Dll dll{machine};
  workbench::Device& port = *AddDeviceServer(machine, {.comNumbers = {5}}).ports[0];
};

// A library of that name in the current directory, or beside the host, is not the system's.
TEST(ModuleDelayLoad, LibrariesAreThoseOfTheSystemDirectory) {
  Rig rig;
  EXPECT_TRUE(rig.RenameClaims(9));
  wchar_t system[MAX_PATH] = {};
  GetSystemDirectoryW(system, MAX_PATH);
  for (const workbench::Call& load : rig.machine.Calls().CallsOf("LoadLibraryExW")) {
    EXPECT_TRUE(load.Text(0).starts_with(std::wstring(system) + L'\\')) << load.detail;
  }
}

TEST(ModuleDelayLoad, AFailedLoadIsTriedAgain) {
  Rig rig;
  rig.FailLoads(1);
  EXPECT_FALSE(rig.RenameClaims(9));
  EXPECT_TRUE(rig.RenameClaims(10));
}

TEST(ModuleDelayLoad, WithoutTheComDatabaseEveryNumberCountsAsTaken) {
  Rig rig;
  rig.FailLoads(workbench::Fault::kEveryLater);
  rig.machine.Screen().Answer(IDNO);
  EXPECT_FALSE(rig.RenameClaims(9));
  EXPECT_EQ(rig.machine.Screen().messageBoxes.size(), 1u);
}

// Each of two first calls that overlap fails by itself, and neither gives a reference back that it did not
// take.
TEST(ModuleDelayLoad, OverlappingFailedLoadsKeepTheModule) {
  Rig rig;
  rig.FailLoads(workbench::Fault::kEveryLater);
  int rounds = 0;
  rig.machine.Calls().AtEachCall([&](const char* function) {
    if (std::string_view(function) != "LoadLibraryExW" || ++rounds > 1) return;
    EXPECT_FALSE(rig.RenameClaims(9));
  });
  EXPECT_FALSE(rig.RenameClaims(9));
  EXPECT_GE(rounds, 1);
  EXPECT_EQ(rig.machine.Calls().CountOf("FreeLibrary"), 0u);
}

}  // namespace
