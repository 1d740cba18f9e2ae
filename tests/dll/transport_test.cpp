// The exchanges with a driver, as they arrive at the driver, and drivers that lie. How a request has to look
// in detail is the simulated driver's to see: it refuses any other, and the rig asks it at the end.
#include <gtest/gtest.h>

#include <cwctype>
#include <functional>
#include <string>
#include <vector>

#include "update_test.h"

namespace {

using testing::ElementsAre;
using workbench::Misbehaviour;
using Operation = DriverFault::Operation;

class TransportTest : public UpdateTest {
 protected:
  // A read that fails because of the fault, with nothing written after it.
  void ExpectFailure(const DriverFault& fault, const char* story) {
    driver.ClearRecords();
    driver.Inject(fault);
    EXPECT_EQ(PushLine(), 0u);
    EXPECT_EQ(Story(), story);
    driver.ClearFaults();
  }
};

TEST_F(TransportTest, OneHandleForEachOperation) {
  ASSERT_EQ(PushLine(), 1u);
  std::vector<std::size_t> lengths;
  std::vector<std::uint64_t> sessions;
  for (const workbench::DriverRecord& record : driver.Records()) {
    sessions.push_back(record.session);
    lengths.insert(lengths.end(), {record.inputLength, record.outputLength});
  }
  EXPECT_THAT(lengths, ElementsAre(0, 0, 8, 4, 8, 132, 0, 0, 8 + 132, 0)) << "open, size, read, open, write";
  ASSERT_EQ(sessions.size(), 5u);
  EXPECT_THAT(sessions, ElementsAre(sessions[0], sessions[0], sessions[0], sessions[3], sessions[3]));
  EXPECT_NE(sessions[0], sessions[3]);
  EXPECT_EQ(machine.Calls().CallsOf("CreateFileW").at(0).Text(0), Port().interfaces.front()->path);
}

TEST_F(TransportTest, DriverThatCannotBeOpenedIsAskedNothing) {
  ExpectFailure({.operation = Operation::Open, .value = ERROR_ACCESS_DENIED}, "");
  EXPECT_EQ(driver.Records().size(), 1u);
}

TEST_F(TransportTest, SizesAndStreamsThatLieEndTheReadWithoutAWrite) {
  struct Case {
    const char* what;
    DriverFault fault;
    const char* story;
  };
  const auto size = [](Misbehaviour misbehaviour, std::uint32_t value) {
    return DriverFault{.operation = Operation::Size, .misbehaviour = misbehaviour, .value = value};
  };
  const auto count = [](std::uint32_t value) {
    return DriverFault{.misbehaviour = Misbehaviour::LieAboutCount, .value = value};
  };
  const Case cases[] = {
      {"size 0", size(Misbehaviour::ReportSize, 0), "size 0, read 0"},
      {"a byte less than the set has", size(Misbehaviour::ReportSize, 131), "size 0, read 0"},
      {"no size", size(Misbehaviour::LieAboutCount, 0), "size 0"},
      {"half a size", size(Misbehaviour::LieAboutCount, 2), "size 0"},
      {"nothing", count(0), "size 0, read 0"},
      {"less than a number", count(3), "size 0, read 0"},
      {"one number", count(4), "size 0, read 0"},
      {"all but a byte", count(131), "size 0, read 0"},
      {"not read again when it grows", {.misbehaviour = Misbehaviour::GrowAfterSize}, "size 0, read 0"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    ExpectFailure(row.fault, row.story);
  }
}

TEST_F(TransportTest, LargestSizeIsNoReasonToCrash) {
  driver.Inject(
      {.operation = Operation::Size, .misbehaviour = Misbehaviour::ReportSize, .value = 0xFFFFFFFF});
  driver.Inject({.operation = Operation::Read});
  EXPECT_EQ(PushLine(), 0u);
  // Whether four gigabytes are to be had is the host's business.
  EXPECT_THAT(Story(), testing::AnyOf("size 0", "size 0, read 0"));
}

TEST_F(TransportTest, ListThatCannotBeHadIsToldOnTheStandardOutput) {
  // The first list is that of the devices, the second that of the interfaces.
  machine.Calls().Inject({.function = "SetupDiGetClassDevsW", .from = 2, .error = ERROR_NOT_ENOUGH_MEMORY});
  testing::internal::CaptureStdout();
  const auto result = PushLine();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "SetupDiGetClassDevs failed: 8\n");
  EXPECT_EQ(result, 0u);
  EXPECT_THAT(driver.Records(), testing::IsEmpty());
}

TEST_F(TransportTest, SurplusIsLeftUnread) {
  driver.Inject({.operation = Operation::Size, .misbehaviour = Misbehaviour::ReportSize, .value = 140});
  EXPECT_EQ(PushLine(), 1u);
  EXPECT_EQ(driver.Records().back().inputLength, 8u + 132);
}

TEST_F(TransportTest, TextsThatLieEndTheReadWithoutAWrite) {
  const auto length = [this](std::uint32_t value) {
    driver.Inject({.misbehaviour = Misbehaviour::TextLength, .value = value});
  };
  const std::function<void()> lies[] = {
      [&] { length(1); },
      [&] { length(0xFFFFFFFF); },
      [&] { driver.Current(kBusSet).SetText("Model", "QX\xE9"); },
      [&] { driver.Current(kBusSet).SetText("Model", std::string("Q\0X", 3)); },
  };
  for (const auto& lie : lies) {
    SCOPED_TRACE(&lie - lies);
    driver.ClearRecords();
    lie();
    EXPECT_EQ(PushNetwork(), 0u);
    EXPECT_EQ(Story(), "size 1, read 1");
    driver.ClearFaults();
  }
}

TEST_F(TransportTest, InterfaceIsFoundByItsReferenceWhateverItsCase) {
  workbench::DeviceInterface& instance = *Port().interfaces.front();
  for (wchar_t& c : instance.path) c = static_cast<wchar_t>(std::towupper(c));
  EXPECT_EQ(PushLine(), 1u);
  EXPECT_EQ(machine.Calls().CallsOf("CreateFileW").at(0).Text(0), instance.path);

  const std::wstring reference = instance.path.substr(instance.path.rfind(L'\\') + 1);
  instance.path = reference;
  machine.Calls().ClearLog();
  EXPECT_EQ(PushLine(), 0u) << "the whole path was compared, found, and cannot be opened";
  const auto opens = machine.Calls().CallsOf("CreateFileW");
  ASSERT_EQ(opens.size(), 1u);
  EXPECT_EQ(opens[0].Text(0), reference);
}

TEST_F(TransportTest, InterfaceOfAnotherDeviceIsNotTaken) {
  Port().interfaces.front()->path += L"0";  // the reference of another driver key
  EXPECT_EQ(PushLine(), 0u);
  EXPECT_EQ(machine.Calls().CountOf("CreateFileW"), 0u);
}

}  // namespace
