// What an exception inside the DLL takes of the process is given back when the DLL is freed.
#include <gtest/gtest.h>

#include <vector>

#include "footprint.h"
#include "workbench/machine/machine.h"

namespace {

// How many more slots the process could take.
template <class Take, class GiveBack>
std::size_t CountFreeSlots(Take take, GiveBack giveBack) {
  std::vector<DWORD> slots;
  for (DWORD slot = take(); slot != TLS_OUT_OF_INDEXES; slot = take()) slots.push_back(slot);
  for (const DWORD slot : slots) giveBack(slot);
  return slots.size();
}

struct Left {
  std::size_t threadSlots = CountFreeSlots(&TlsAlloc, &TlsFree);
  std::size_t fiberSlots = CountFreeSlots([] { return FlsAlloc(nullptr); }, &FlsFree);
  std::size_t handles = Footprint::Take().kernelHandles;
};

// An allocation that fails throws, and the export turns that into its failure value.
void ThrowInTheDll(workbench::Machine& machine, const workbench::Device& port) {
  const workbench::Dll dll(machine);
  machine.Calls().ClearLog();
  machine.Calls().FailAllocation(1);
  EXPECT_EQ(dll.NPortSettingsUpdate(port.instanceId.c_str(), nullptr, 57600, 3, 1, 0, 4), FALSE);
  EXPECT_EQ(machine.Calls().FailedAllocations(), 1u);
}

TEST(ModuleExceptions, TakeNothingOfTheProcessForGood) {
  workbench::Machine machine;
  const workbench::DeviceServer server = AddDeviceServer(machine, {.comNumbers = {7}});
  ThrowInTheDll(machine, *server.ports[0]);  // what Windows' own DLLs take is taken once
  const Left before;
  for (int cycle = 0; cycle < 30; ++cycle) ThrowInTheDll(machine, *server.ports[0]);
  const Left after;
  EXPECT_EQ(after.threadSlots, before.threadSlots);
  EXPECT_EQ(after.fiberSlots, before.fiberSlots);
  EXPECT_EQ(after.handles, before.handles);
}

}  // namespace
