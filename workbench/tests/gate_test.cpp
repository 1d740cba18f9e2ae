// What the gate sees of a module: what it looks up, what is open, and misuse, which is refused and reported.
#include "workbench/machine/gate/gate.h"

#include <gmock/gmock.h>

#include "workbench/tests/probe_dll.h"

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class GateOfMachine : public testing::Test {
 protected:
  Machine machine;
  Gate& gate = machine.Calls();
  ProbeDll probe{machine};
};

TEST_F(GateOfMachine, CountsWhatIsOpenAndReportsASecondClose) {
  constexpr wchar_t kKey[] = L"Software\\Probe";
  machine.Registry().MakeKey(kKey);
  gate.ClearLog();
  HKEY key = nullptr;
  ASSERT_EQ(probe.OpenKey(kKey, &key), ERROR_SUCCESS);
  EXPECT_THAT(gate.LeftOpen(), ElementsAre("handle of RegOpenKeyExW"));
  gate.Inject({.function = "RegCloseKey"});
  EXPECT_EQ(probe.CloseKey(key), ERROR_INVALID_HANDLE) << "a failed close still closes";
  EXPECT_THAT(gate.OpenHandles(), IsEmpty());
  EXPECT_THAT(gate.Violations(), IsEmpty());
  probe.CloseKey(key);
  EXPECT_THAT(gate.Violations(), ElementsAre(HasSubstr("RegCloseKey")));
}

TEST_F(GateOfMachine, ReportsWhatIsLookedUpThoughItIsNotSimulatedOrSafe) {
  EXPECT_NE(probe.Find("setupapi.dll", "SetupDiSelectDevice"), nullptr);
  EXPECT_NE(probe.Find("mapi32.dll", "MAPILogon"), nullptr);
  EXPECT_THAT(gate.Violations(), ElementsAre(HasSubstr("SetupDiSelectDevice is not simulated"),
                                             HasSubstr("loads mapi32.dll from where it is found first")));
}

TEST_F(GateOfMachine, ReportsMisuseOfAComPort) {
  AddDeviceServer(machine, {.comNumbers = {7}});
  const HANDLE open = probe.OpenFile(L"\\\\.\\COM7");
  ASSERT_NE(open, INVALID_HANDLE_VALUE);
  EXPECT_EQ(probe.OpenFile(L"\\\\.\\COM7"), INVALID_HANDLE_VALUE) << "a port is opened once";
  EXPECT_TRUE(probe.CloseFile(open));
  EXPECT_THAT(gate.Violations(), IsEmpty());
  EXPECT_FALSE(probe.CloseFile(open));
  EXPECT_FALSE(probe.Call<BOOL(HANDLE)>("ControlWithoutCount", open));
  EXPECT_THAT(gate.Violations(),
              ElementsAre(HasSubstr("CloseHandle: not an open handle"), HasSubstr("Windows would crash")));
}

}  // namespace
}  // namespace workbench
