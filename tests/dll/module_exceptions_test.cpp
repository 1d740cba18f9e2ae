// Loading the DLL, and an exception inside it, take nothing of the process that freeing it does not give
// back.
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "footprint.h"
#include "workbench/machine/builders.h"
#include "workbench/machine/dll.h"

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
  Footprint footprint = Footprint::Take();
};

// An allocation that fails throws, and the export turns that into its failure value.
void ThrowInTheDll(workbench::Machine& machine, const workbench::Device& port) {
  const workbench::Dll dll(machine);
  machine.Calls().ClearLog();
  machine.Calls().FailAllocation(1);
  EXPECT_EQ(dll.NPortSettingsUpdate(port.instanceId.c_str(), nullptr, 57600, 3, 1, 0, 4), 0u);
  EXPECT_EQ(machine.Calls().FailedAllocations(), 1u);
}

// KDUUI_LOADS raises the number.
int Loads() {
  const char* const text = std::getenv("KDUUI_LOADS");
  return text != nullptr ? std::atoi(text) : 100;
}

// Loads and frees the DLL, every tenth time with an exception inside.
void Load(workbench::Machine& machine, const workbench::Device& port, int times) {
  for (int load = 1; load <= times; ++load) {
    if (load % 10 == 0) {
      ThrowInTheDll(machine, port);
    } else {
      const workbench::Dll dll(machine);
    }
  }
}

TEST(ModuleExceptions, LoadsLeaveNothingOfTheProcess) {
  workbench::Machine machine;
  const workbench::DeviceServer server = AddDeviceServer(machine, {.comNumbers = {7}});
  // What Windows takes is taken once, and a heap changes its ways for sizes that are asked for often.
  Load(machine, *server.ports[0], Loads());
  const Left before;
  Load(machine, *server.ports[0], Loads());
  const Left after;
  EXPECT_EQ(after.threadSlots, before.threadSlots);
  EXPECT_EQ(after.fiberSlots, before.fiberSlots);
  EXPECT_EQ(after.footprint.kernelHandles, before.footprint.kernelHandles);
  EXPECT_EQ(after.footprint.heapBytes, before.footprint.heapBytes);
}

}  // namespace
