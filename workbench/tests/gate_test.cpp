#include "workbench/machine/gate/gate.h"

#include <gmock/gmock.h>

#include "workbench/tests/probe_dll.h"

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr wchar_t kKey[] = L"Software\\Probe";

class GateOfMachine : public testing::Test {
 protected:
  Machine machine;
  Gate& gate = machine.Calls();
  ProbeDll probe{machine};

  GateOfMachine() {
    machine.Registry().MakeKey(kKey);
    machine.DosNames().Define(L"COM3", L"\\Device\\A");
    gate.ClearLog();
  }
  LSTATUS OpenAndClose() {
    HKEY key = nullptr;
    const LSTATUS status = probe.OpenKey(kKey, &key);
    if (status == ERROR_SUCCESS) probe.CloseKey(key);
    return status;
  }
  DWORD Query() { return probe.Call<DWORD(const wchar_t*)>("Query", L"COM3"); }
};

TEST_F(GateOfMachine, FailsTheKthCallOfAllWithItsDocumentedFailure) {
  gate.Inject({.from = 3});
  EXPECT_EQ(OpenAndClose(), ERROR_SUCCESS);  // calls 1 and 2
  SetLastError(0);
  EXPECT_EQ(Query(), 0u);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
  EXPECT_NE(Query(), 0u);
  EXPECT_EQ(gate.FaultableCalls(), 4u);
  EXPECT_EQ(gate.InjectedFaults(), 1u);
  EXPECT_TRUE(gate.CallsOf("QueryDosDeviceW").at(0).injected);
}

TEST_F(GateOfMachine, FailsOneFunctionFromACallOn) {
  gate.Inject({.function = "RegOpenKeyExW", .from = 2, .count = Fault::kEveryLater, .error = ERROR_BADKEY});
  EXPECT_EQ(OpenAndClose(), ERROR_SUCCESS);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(OpenAndClose(), ERROR_BADKEY);
  EXPECT_NE(Query(), 0u);
  gate.ClearFaults();
  EXPECT_EQ(OpenAndClose(), ERROR_SUCCESS);
}

TEST_F(GateOfMachine, CountsWhatIsOpenAndReportsASecondClose) {
  HKEY key = nullptr;
  ASSERT_EQ(probe.OpenKey(kKey, &key), ERROR_SUCCESS);
  EXPECT_THAT(gate.LeftOpen(), ElementsAre("registry key of RegOpenKeyExW"));
  gate.Inject({.function = "RegCloseKey"});
  EXPECT_EQ(probe.CloseKey(key), ERROR_INVALID_HANDLE) << "a failed close still closes";
  EXPECT_THAT(gate.OpenHandles(), IsEmpty());
  EXPECT_THAT(gate.Violations(), IsEmpty());
  probe.CloseKey(key);
  EXPECT_THAT(gate.Violations(), ElementsAre(HasSubstr("RegCloseKey")));
}

TEST_F(GateOfMachine, FailsTheKthAllocation) {
  const auto allocate = [&] { return probe.Call<void*(std::size_t)>("Allocate", std::size_t{10}); };
  gate.FailAllocation(2);
  void* first = allocate();
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(allocate(), nullptr);
  void* third = allocate();
  EXPECT_NE(third, nullptr);
  EXPECT_EQ(gate.Allocations(), 3u);
  probe.Call<void(void*)>("Free", first);
  probe.Call<void(void*)>("Free", third);
}

}  // namespace
}  // namespace workbench
