// Both settings updates again, with every platform call and every allocation failed once: a result that tells
// the truth, nothing left open, no crash. What stays open is checked by the rig.
#include <gtest/gtest.h>

#include <cstdint>

#include "update_rig.h"

namespace {

class UpdateFaultsTest : public UpdateRig {
 protected:
  std::uint64_t Update() { return networkInfo_(Id(), nullptr, 0xC0A8000A, 4001, 0, 9001, 80, 1, 2, 1, 2); }
  void Reset() {
    const scripted::Driver fresh;
    driver_.sets = fresh.sets;
    if (Port().disabled) machine_.Devices().Enable(Port());  // where the second half of a restart failed
    machine_.Calls().ClearFaults();
    machine_.Calls().ClearLog();
  }
  // The second of two updates: the first makes what the language runtime makes once, which is no part of it.
  std::uint64_t CountedUpdate() {
    static_cast<void>(Update());
    Reset();
    return Update();
  }
  // Whether both drivers have what Update writes.
  [[nodiscard]] bool IsWritten() {
    const auto fresh = scripted::Driver().sets;
    return driver_.sets[scripted::kBusSet] != fresh.at(scripted::kBusSet) &&
           driver_.sets[scripted::kPortSet] != fresh.at(scripted::kPortSet);
  }
};

TEST_F(UpdateFaultsTest, EveryPlatformCallFailedOnce) {
  Port().port->openElsewhere = true;  // so that the restart is part of it
  ASSERT_EQ(CountedUpdate(), 1U);
  const std::uint64_t calls = machine_.Calls().FaultableCalls();
  ASSERT_GT(calls, 20U);
  int failures = 0;
  for (std::uint64_t k = 1; k <= calls; ++k) {
    SCOPED_TRACE(testing::Message() << "call " << k);
    Reset();
    machine_.Calls().Inject({.function = "", .from = k});
    const std::uint64_t result = Update();
    EXPECT_EQ(result, IsWritten() ? 1U : 0U);
    EXPECT_EQ(machine_.Calls().InjectedFaults(), 1U);
    EXPECT_EQ(LeftOpen(), "");
    if (result == 0) ++failures;
  }
  EXPECT_GT(failures, 10);
}

TEST_F(UpdateFaultsTest, EveryAllocationFailedOnce) {
  ASSERT_EQ(CountedUpdate(), 1U);
  const std::uint64_t allocations = machine_.Calls().Allocations();
  ASSERT_GT(allocations, 20U);
  for (std::uint64_t k = 1; k <= allocations; ++k) {
    SCOPED_TRACE(testing::Message() << "allocation " << k);
    Reset();
    machine_.Calls().FailAllocation(k);
    const std::uint64_t result = Update();
    // A set that lacks a parameter is a shorter stream, which a driver rejects; this one takes anything.
    EXPECT_TRUE(result == 0 || IsWritten());
    EXPECT_EQ(LeftOpen(), "");
  }
}

}  // namespace
