// The two exports that push settings into a port, through the built DLL.
#include <gtest/gtest.h>

#include <vector>

#include "update_rig.h"

namespace {

namespace bus = scripted::bus;
namespace port = scripted::port;
using scripted::Numbers;

class SettingsUpdateTest : public UpdateRig {};

TEST_F(SettingsUpdateTest, LineSettingsChangeFiveParametersOfThePort) {
  EXPECT_EQ(settings_(Id(), &driver_, 115200, 3, 4, 2, 1), 1U);
  EXPECT_EQ(driver_.Story(), "size 0, read 0, write 0");
  auto expected = Numbers(port::kCount, 0x10);
  expected[port::kBaudrate] = 115200;
  expected[port::kDatabits] = 3;
  expected[port::kParity] = 4;
  expected[port::kStopbits] = 2;
  expected[port::kFlowControl] = 1;
  EXPECT_EQ(driver_.sets[scripted::kPortSet], scripted::PortStream(expected));
}

TEST_F(SettingsUpdateTest, NetworkInfoReadsAndWritesTheBusFirst) {
  EXPECT_EQ(networkInfo_(Id(), nullptr, 0xC0A8000A, 4001, 99, 9001, 8080, 0x0090E8, 0x123456, 2, 1), 1U);
  EXPECT_EQ(driver_.Story(), "size 1, read 1, size 0, read 0, write 1, write 0");

  auto expectedBus = Numbers(bus::kCount, 0x100);
  expectedBus[bus::kAddressToConnect] = 0xC0A8000A;
  expectedBus[bus::kPortNumber] = 4001;
  expectedBus[bus::kServerConfigPort] = 9001;
  expectedBus[bus::kServerWebPort] = 8080;
  expectedBus[bus::kMacAddress1] = 0x0090E8;
  expectedBus[bus::kMacAddress2] = 0x123456;
  expectedBus[bus::kPortType] = 1;
  EXPECT_EQ(driver_.sets[scripted::kBusSet], scripted::BusStream(expectedBus, "TCP", "QX-582"));

  auto expectedPort = Numbers(port::kCount, 0x10);
  expectedPort[port::kPortType] = 1;
  expectedPort[port::kDuplexMode] = 2;
  EXPECT_EQ(driver_.sets[scripted::kPortSet], scripted::PortStream(expectedPort));
}

TEST_F(SettingsUpdateTest, PortThatOpensIsNotRestarted) {
  EXPECT_EQ(settings_(Id(), nullptr, 9600, 3, 0, 0, 0), 1U);
  EXPECT_EQ(networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 0, 0), 1U);
  EXPECT_EQ(Restarts(), "");
  const auto opens = machine_.Calls().CallsOf("CreateFileW");
  ASSERT_FALSE(opens.empty());
  EXPECT_EQ(opens.back().Text(0), L"\\\\.\\COM6") << "asked last, when the drivers have the settings";
  EXPECT_EQ(machine_.Calls().CallsOf("SetupDiGetClassDevsW").at(0).Number(3), 6U);
  EXPECT_EQ(machine_.Calls().CallsOf("SetupDiOpenDeviceInfoW").at(0).Number(3), 6U);
}

TEST_F(SettingsUpdateTest, PortInUseIsDisabledAndEnabledAgain) {
  Port().port->openElsewhere = true;
  EXPECT_EQ(settings_(Id(), nullptr, 9600, 3, 0, 0, 0), 1U);
  EXPECT_EQ(Restarts(), "-+");
  EXPECT_EQ(networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 0, 0), 1U);
  EXPECT_EQ(Restarts(), "-+-+");
  EXPECT_TRUE(Port().started);
}

TEST_F(SettingsUpdateTest, RestartThatFailsChangesNoResult) {
  Port().port->openElsewhere = true;
  machine_.Calls().Inject({.function = "SetupDiCallClassInstaller", .count = workbench::Fault::kEveryLater});
  EXPECT_EQ(settings_(Id(), nullptr, 9600, 3, 0, 0, 0), 1U);
  EXPECT_EQ(machine_.Calls().CountOf("SetupDiCallClassInstaller"), 2U) << "enabled although disabling failed";
  EXPECT_EQ(Restarts(), "");
}

TEST_F(SettingsUpdateTest, UnknownDeviceIsAFailure) {
  Port().port->openElsewhere = true;
  for (const wchar_t* id :
       {static_cast<const wchar_t*>(nullptr), L"", L"KDNBUS\\NOWHERE\\1", L"no id at all"}) {
    EXPECT_EQ(settings_(id, nullptr, 9600, 3, 0, 0, 0), 0U);
    EXPECT_EQ(networkInfo_(id, nullptr, 1, 2, 0, 3, 4, 5, 6, 0, 0), 0U);
  }
  EXPECT_TRUE(driver_.opens.empty());
  EXPECT_EQ(Restarts(), "");
}

TEST_F(SettingsUpdateTest, PortWithoutNameOrInterfaceIsAFailure) {
  machine_.Registry().DeleteValue(workbench::ParametersKeyOf(Port().instanceId), L"PortName");
  EXPECT_EQ(settings_(Id(), nullptr, 9600, 3, 0, 0, 0), 0U);
  EXPECT_EQ(networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 0, 0), 0U);

  machine_.Registry().SetText(workbench::ParametersKeyOf(Port().instanceId), L"PortName", L"COM6");
  for (const auto& instance : Port().interfaces) instance->active = false;
  EXPECT_EQ(settings_(Id(), nullptr, 9600, 3, 0, 0, 0), 0U);
  EXPECT_EQ(networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 0, 0), 0U);
  EXPECT_EQ(machine_.Calls().CountOf("CreateFileW"), 0U) << "without an interface nothing is opened";
}

TEST_F(SettingsUpdateTest, DriverThatRefusesIsAFailureWithoutRestart) {
  Port().port->openElsewhere = true;
  const auto before = driver_.sets;
  struct Case {
    int refused;
    const char* story;
    bool busWritten;
  };
  for (const Case& row :
       {Case{1, "size 1", false}, Case{2, "size 1, read 1", false}, Case{3, "size 1, read 1, size 0", false},
        Case{4, "size 1, read 1, size 0, read 0", false},
        Case{5, "size 1, read 1, size 0, read 0, write 1", false},
        Case{6, "size 1, read 1, size 0, read 0, write 1, write 0", true}}) {
    SCOPED_TRACE(row.story);
    driver_.sets = before;
    driver_.requests.clear();
    driver_.script = scripted::RefuseNth(row.refused);
    EXPECT_EQ(networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 1, 1), 0U);
    EXPECT_EQ(driver_.Story(), row.story);
    EXPECT_EQ(driver_.sets[scripted::kPortSet], before.at(scripted::kPortSet));
    EXPECT_EQ(driver_.sets[scripted::kBusSet] != before.at(scripted::kBusSet), row.busWritten);
  }
  for (int refused = 1; refused <= 3; ++refused) {
    driver_.script = scripted::RefuseNth(refused);
    EXPECT_EQ(settings_(Id(), nullptr, 9600, 3, 0, 0, 0), 0U) << refused;
  }
  EXPECT_EQ(Restarts(), "");
}

}  // namespace
