// The two exports that push settings into a port, through the built DLL.
#include <gtest/gtest.h>

#include "update_test.h"

namespace {

using testing::UnorderedElementsAre;
using workbench::ParameterValues;
using Operation = DriverFault::Operation;

class SettingsUpdateTest : public UpdateTest {};

TEST_F(SettingsUpdateTest, LineSettingsChangeFiveParametersOfThePort) {
  const ParameterValues before = driver.Current(kPortSet);
  EXPECT_EQ(settings_(Id(), &driver, 115200, 3, 4, 2, 1), 1u);
  EXPECT_EQ(Story(), "size 0, read 0, write 0");
  EXPECT_THAT(Differences(before, driver.Current(kPortSet)),
              UnorderedElementsAre("Baudrate 20 -> 115200", "Databits 21 -> 3", "Parity 22 -> 4",
                                   "Stopbits 23 -> 2", "FlowControl 24 -> 1"));
}

TEST_F(SettingsUpdateTest, NetworkInfoReadsAndWritesTheBusFirst) {
  const ParameterValues port = driver.Current(kPortSet);
  const ParameterValues bus = driver.Current(kBusSet);
  EXPECT_EQ(networkInfo_(Id(), nullptr, 0xC0A8000A, 4001, 99, 9001, 8080, 0x0090E8, 0x123456, 2, 1), 1u);
  EXPECT_EQ(Story(), "size 1, read 1, size 0, read 0, write 1, write 0");
  EXPECT_THAT(
      Differences(bus, driver.Current(kBusSet)),
      UnorderedElementsAre("AddressToConnect 262 -> 3232235530", "PortNumber 263 -> 4001",
                           "ServerConfigPort 270 -> 9001", "ServerWebPort 271 -> 8080",
                           "MACAddress1 268 -> 37096", "MACAddress2 269 -> 1193046", "PortType 260 -> 1"));
  EXPECT_THAT(Differences(port, driver.Current(kPortSet)),
              UnorderedElementsAre("PortType 16 -> 1", "DuplexMode 19 -> 2"));
}

TEST_F(SettingsUpdateTest, PortThatOpensIsNotRestarted) {
  EXPECT_EQ(PushLine(), 1u);
  EXPECT_EQ(PushNetwork(), 1u);
  EXPECT_EQ(Restarts(), "");
  const auto opens = machine.Calls().CallsOf("CreateFileW");
  ASSERT_FALSE(opens.empty());
  EXPECT_EQ(opens.back().Text(0), L"\\\\.\\COM6") << "asked last, when the drivers have the settings";
  EXPECT_EQ(machine.Calls().CallsOf("SetupDiGetClassDevsW").at(0).Number(3), 6u);
  EXPECT_EQ(machine.Calls().CallsOf("SetupDiOpenDeviceInfoW").at(0).Number(3), 6u);
}

TEST_F(SettingsUpdateTest, PortInUseIsDisabledAndEnabledAgain) {
  Port().port->openElsewhere = true;
  EXPECT_EQ(PushLine(), 1u);
  EXPECT_EQ(Restarts(), "-+");
  EXPECT_EQ(PushNetwork(), 1u);
  EXPECT_EQ(Restarts(), "-+-+");
  EXPECT_TRUE(Port().started);

  machine.Calls().ClearLog();
  machine.Calls().Inject({.function = "SetupDiCallClassInstaller", .count = workbench::Fault::kEveryLater});
  EXPECT_EQ(PushLine(), 1u) << "a restart that fails changes no result";
  EXPECT_EQ(machine.Calls().CountOf("SetupDiCallClassInstaller"), 2u) << "enabled although disabling failed";
  EXPECT_EQ(Restarts(), "-+-+");
}

// From the last allocation back to the last one before the drivers had the settings.
TEST_F(SettingsUpdateTest, MemoryThatRunsOutAfterTheDriversHaveTheSettingsIsNoFailure) {
  Port().port->openElsewhere = true;
  machine.Calls().ClearLog();
  EXPECT_EQ(PushLine(), 1u);
  std::uint64_t k = machine.Calls().Allocations();
  const std::uint64_t last = k;
  for (bool written = true; written; --k) {
    SCOPED_TRACE(k);
    driver.Current(kPortSet).SetNumber("Baudrate", 0);
    machine.Calls().FailAllocation(k);
    const std::uint64_t result = PushLine();
    written = driver.Current(kPortSet).Number("Baudrate") == 9600;
    EXPECT_EQ(result, written ? 1u : 0u);
  }
  EXPECT_LT(k + 1, last);
}

TEST_F(SettingsUpdateTest, UnknownDeviceIsAFailure) {
  Port().port->openElsewhere = true;
  for (const wchar_t* id :
       {static_cast<const wchar_t*>(nullptr), L"", L"KDNBUS\\NOWHERE\\1", L"no id at all"}) {
    EXPECT_EQ(settings_(id, nullptr, 9600, 3, 0, 0, 0), 0u);
    EXPECT_EQ(networkInfo_(id, nullptr, 1, 2, 0, 3, 4, 5, 6, 0, 0), 0u);
  }
  EXPECT_THAT(driver.Records(), testing::IsEmpty());
  EXPECT_EQ(Restarts(), "");
}

TEST_F(SettingsUpdateTest, PortWithoutNameOrInterfaceIsAFailure) {
  machine.Registry().DeleteValue(workbench::ParametersKeyOf(Port().instanceId), L"PortName");
  EXPECT_EQ(PushLine() + PushNetwork(), 0u);

  machine.Registry().SetText(workbench::ParametersKeyOf(Port().instanceId), L"PortName", L"COM6");
  for (const auto& instance : Port().interfaces) instance->active = false;
  EXPECT_EQ(PushLine() + PushNetwork(), 0u);
  EXPECT_EQ(machine.Calls().CountOf("CreateFileW"), 0u) << "without an interface nothing is opened";
}

TEST_F(SettingsUpdateTest, DriverThatRefusesIsAFailureWithoutRestart) {
  Port().port->openElsewhere = true;
  const ParameterValues port = driver.Current(kPortSet);
  const ParameterValues bus = driver.Current(kBusSet);
  struct Case {
    Operation operation;
    std::uint32_t selector;
    const char* story;
  };
  for (const Case& row :
       {Case{Operation::Size, kBusSet, "size 1"}, Case{Operation::Read, kBusSet, "size 1, read 1"},
        Case{Operation::Size, kPortSet, "size 1, read 1, size 0"},
        Case{Operation::Read, kPortSet, "size 1, read 1, size 0, read 0"},
        Case{Operation::Write, kBusSet, "size 1, read 1, size 0, read 0, write 1"},
        Case{Operation::Write, kPortSet, "size 1, read 1, size 0, read 0, write 1, write 0"}}) {
    SCOPED_TRACE(row.story);
    driver.ClearRecords();
    driver.Inject({.operation = row.operation, .selector = row.selector});
    EXPECT_EQ(PushNetwork(), 0u);
    EXPECT_EQ(Story(), row.story);
    EXPECT_EQ(driver.Current(kPortSet), port);
    const bool busIsWritten = row.operation == Operation::Write && row.selector == kPortSet;
    EXPECT_EQ(driver.Current(kBusSet) != bus, busIsWritten);
    if (row.selector == kPortSet) {
      EXPECT_EQ(PushLine(), 0u);
    }
    driver.ClearFaults();
  }
  EXPECT_EQ(Restarts(), "");
}

}  // namespace
