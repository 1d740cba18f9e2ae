// Loading the DLL, and an exception inside it, take nothing of the process that freeing it does not give
// back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "base/unique_handle.h"
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

// Bytes in use on every heap.
std::size_t CountHeapBytes() {
  HANDLE heaps[64];
  const DWORD count = std::min<DWORD>(GetProcessHeaps(ARRAYSIZE(heaps), heaps), ARRAYSIZE(heaps));
  std::size_t bytes = 0;
  for (DWORD i = 0; i < count; ++i) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[i], &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    }
  }
  return bytes;
}

// A new handle takes the first free place of the process's table, so each one that stays moves the next one
// on.
HANDLE NextHandle() {
  return CKernelHandle(CreateEventW(nullptr, FALSE, FALSE, nullptr)).Get();
}

struct Left {
  std::size_t threadSlots = CountFreeSlots(&TlsAlloc, &TlsFree);
  std::size_t fiberSlots = CountFreeSlots([] { return FlsAlloc(nullptr); }, &FlsFree);
  std::size_t heapBytes = CountHeapBytes();
  HANDLE nextHandle = NextHandle();
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
  EXPECT_EQ(after.heapBytes, before.heapBytes);
  EXPECT_EQ(after.nextHandle, before.nextHandle);
}

}  // namespace
