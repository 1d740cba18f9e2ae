// The two exports that push settings into a port, through the built DLL, and drivers that refuse or lie. How
// a request has to look in detail is the simulated driver's to see: it refuses any other, and the rig asks
// it.
#include <cstdint>
#include <cwctype>

#include "rig_test.h"

namespace {

using testing::UnorderedElementsAre;
using workbench::DriverFault;
using workbench::Misbehaviour;
using workbench::ParameterValues;
using Operation = DriverFault::Operation;

// Three ports, of which the second is pushed into.
class SettingsUpdateTest : public RigTest {
 protected:
  // Numbers that tell each parameter apart.
  SettingsUpdateTest() : RigTest({.comNumbers = {5, 6, 7}, .web = false}) {
    for (const std::uint32_t selector : {kPortSet, kBusSet}) {
      std::uint32_t number = selector == kPortSet ? 0x10 : 0x100;
      for (const workbench::Parameter& parameter : workbench::SetLayout(selector)) {
        if (parameter.text == nullptr) driver.Current(selector).SetNumber(parameter.name, number++);
      }
    }
  }
  ~SettingsUpdateTest() override {
    for (const unsigned other : {0u, 2u})
      EXPECT_THAT(Driver(other).Records(), testing::IsEmpty()) << "another port's driver was opened";
    EXPECT_TRUE(Boxes().empty());
  }

  [[nodiscard]] Device& Port() { return *server.ports[1]; }
  [[nodiscard]] const wchar_t* Id() { return Port().instanceId.c_str(); }
  // Line settings: one read and one write of the port set. Network settings: both sets are read, then
  // written.
  std::uint64_t PushLine() { return settings_(Id(), nullptr, 9600, 3, 0, 0, 0); }
  std::uint64_t PushNetwork() { return networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 1, 1); }
  // "size 0, read 0, write 1": what the drivers were asked, with the selectors, since the records were
  // cleared.
  [[nodiscard]] std::string Story() const {
    std::string story;
    for (const workbench::DriverRecord& record : driver.Records()) {
      if (record.code == 0) continue;  // an open
      constexpr const char* kWords[] = {"size ", "read ", "write "};
      story +=
          (story.empty() ? "" : ", ") + std::string(kWords[(record.code - workbench::kGetCurrentSize) / 4]);
      story += std::to_string(record.selector.value_or(9));
    }
    return story;
  }
  // The disables and enables of the port, in order: "-+" is a restart.
  [[nodiscard]] std::string Restarts() {
    std::string events;
    for (const auto& record : machine.Devices().Events()) {
      if (record.instanceId != Port().instanceId) continue;
      if (record.event == workbench::DeviceEvent::Disabled) events += '-';
      if (record.event == workbench::DeviceEvent::Enabled) events += '+';
    }
    return events;
  }

  workbench::PortDriver& driver = Driver(1);
  KdNPortNetworkInfoUpdateFn networkInfo_ = dll->NPortNetworkInfoUpdate;
  KdNPortSettingsUpdateFn settings_ = dll->NPortSettingsUpdate;
};

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
}

TEST_F(SettingsUpdateTest, PortInUseIsDisabledAndEnabledAgain) {
  Port().port->openElsewhere = true;
  EXPECT_EQ(PushLine(), 1u);
  EXPECT_EQ(Restarts(), "-+");
  EXPECT_EQ(PushNetwork(), 1u);
  EXPECT_EQ(Restarts(), "-+-+");
  EXPECT_TRUE(Port().started);
}

// The restart is the last thing that needs memory.
TEST_F(SettingsUpdateTest, MemoryThatRunsOutAfterTheDriversHaveTheSettingsIsNoFailure) {
  Port().port->openElsewhere = true;
  machine.Calls().ClearLog();
  EXPECT_EQ(PushLine(), 1u);
  machine.Calls().FailAllocation(machine.Calls().Allocations());
  EXPECT_EQ(PushLine(), 1u);
  EXPECT_EQ(machine.Calls().FailedAllocations(), 1u);
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

// A short, lying or refused answer ends the exchange: nothing is written behind it, and nothing restarted.
TEST_F(SettingsUpdateTest, DriverThatRefusesOrLiesIsAFailureWithoutRestart) {
  Port().port->openElsewhere = true;
  const ParameterValues port = driver.Current(kPortSet);
  const ParameterValues bus = driver.Current(kBusSet);
  const auto lie = [](Operation operation, Misbehaviour misbehaviour, std::uint32_t value) {
    return DriverFault{
        .operation = operation, .misbehaviour = misbehaviour, .value = value, .selector = kPortSet};
  };
  const struct {
    const char* what;
    DriverFault fault;
    const char* story;
  } cases[] = {
      {"no open", {.operation = Operation::Open, .value = ERROR_ACCESS_DENIED}, ""},
      {"half a size", lie(Operation::Size, Misbehaviour::LieAboutCount, 2), "size 1, read 1, size 0"},
      {"all but a byte", lie(Operation::Read, Misbehaviour::LieAboutCount, 131),
       "size 1, read 1, size 0, read 0"},
      {"more than was announced", lie(Operation::Read, Misbehaviour::GrowAfterSize, 0),
       "size 1, read 1, size 0, read 0"},
      {"no write of the port",
       {.operation = Operation::Write, .selector = kPortSet},
       "size 1, read 1, size 0, read 0, write 1, write 0"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    driver.ClearRecords();
    driver.Inject(row.fault);
    EXPECT_EQ(PushNetwork(), 0u);
    EXPECT_EQ(Story(), row.story);
    EXPECT_EQ(driver.Current(kPortSet), port);
    EXPECT_EQ(driver.Current(kBusSet) != bus, std::string_view(row.story).ends_with("write 0"));
    driver.ClearFaults();
  }
  EXPECT_EQ(Restarts(), "");
}

TEST_F(SettingsUpdateTest, ListThatIsNotAvailableIsReportedOnTheStandardOutput) {
  // The first list is that of the devices, the second that of the interfaces.
  machine.Calls().Inject({.function = "SetupDiGetClassDevsW", .from = 2, .error = ERROR_OUTOFMEMORY});
  testing::internal::CaptureStdout();
  const auto result = PushLine();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "SetupDiGetClassDevs failed: e\n");
  EXPECT_EQ(result, 0u);
  EXPECT_THAT(driver.Records(), testing::IsEmpty());
}

TEST_F(SettingsUpdateTest, InterfaceIsFoundByItsReferenceWhateverItsCase) {
  workbench::DeviceInterface& instance = *Port().interfaces.front();
  for (wchar_t& c : instance.path) c = static_cast<wchar_t>(std::towupper(c));
  EXPECT_EQ(PushLine(), 1u);
  EXPECT_EQ(machine.Calls().CallsOf("CreateFileW").at(0).Text(0), instance.path);
}

}  // namespace
