// The exchanges with a driver, as they arrive at the driver, and drivers that lie.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <string>
#include <vector>

#include "update_rig.h"

namespace {

using scripted::Bytes;
using workbench::DriverAnswer;
using workbench::DriverRequest;

class TransportTest : public UpdateRig {
 protected:
  // One read and one write of the port set.
  std::uint64_t Exchange() { return settings_(Id(), nullptr, 9600, 3, 0, 0, 0); }

  // Answers requests of one code with these bytes, and claims that they are `returned`.
  void AnswerWith(DWORD code, Bytes bytes, DWORD returned) {
    driver_.script = [=](const DriverRequest& request) -> std::optional<DriverAnswer> {
      if (request.code != code) return std::nullopt;
      const std::size_t count = std::min(bytes.size(), request.output.size());
      std::transform(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count),
                     request.output.begin(), [](std::uint8_t byte) { return std::byte{byte}; });
      return DriverAnswer{.error = ERROR_SUCCESS, .returned = returned};
    };
  }
};

TEST_F(TransportTest, RequestsAreWhatTheDriversExpect) {
  ASSERT_EQ(Exchange(), 1U);
  ASSERT_EQ(driver_.requests.size(), 3U);
  const Bytes header = {0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF};
  struct Case {
    DWORD code;
    std::size_t inputSize, outputSize;
  };
  const Case expected[] = {
      {scripted::kSizeOfCurrent, 8, 4}, {scripted::kCurrent, 8, 132}, {scripted::kWrite, 8 + 132, 0}};
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    SCOPED_TRACE(i);
    const scripted::Request& request = driver_.requests[i];
    EXPECT_EQ(request.code, expected[i].code);
    ASSERT_EQ(request.input.size(), expected[i].inputSize);
    EXPECT_TRUE(std::equal(header.begin(), header.end(), request.input.begin()));
    EXPECT_EQ(request.outputSize, expected[i].outputSize);
    EXPECT_EQ(request.hasOutput, expected[i].outputSize != 0);
    EXPECT_FALSE(request.overlapped);
  }
  EXPECT_EQ(driver_.requests[0].session, driver_.requests[1].session) << "one handle for each operation";
  EXPECT_NE(driver_.requests[1].session, driver_.requests[2].session);

  ASSERT_EQ(driver_.opens.size(), 2U);
  for (const workbench::DriverOpen& open : driver_.opens) {
    EXPECT_EQ(open.path, Port().interfaces.front()->path);
    EXPECT_EQ(open.access, 0xC0000000U);
    EXPECT_EQ(open.share, 0U);
    EXPECT_EQ(open.disposition, static_cast<DWORD>(OPEN_EXISTING));
    EXPECT_EQ(open.flags, 0x40000000U);
    EXPECT_FALSE(open.hasSecurity);
    EXPECT_FALSE(open.hasTemplate);
  }
}

TEST_F(TransportTest, SelectorOfTheBusIsOne) {
  ASSERT_EQ(networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 0, 0), 1U);
  const Bytes header = {1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF};
  ASSERT_GE(driver_.requests.size(), 5U);
  for (const std::size_t i : {0U, 1U, 4U}) {
    const Bytes& input = driver_.requests[i].input;
    EXPECT_TRUE(std::equal(header.begin(), header.end(), input.begin())) << i;
  }
  EXPECT_EQ(driver_.requests[4].input.size(), 8U + 142 + 9) << "the texts that the driver reported go back";
}

TEST_F(TransportTest, DriverThatCannotBeOpenedIsAskedNothing) {
  driver_.openError = ERROR_ACCESS_DENIED;
  EXPECT_EQ(Exchange(), 0U);
  EXPECT_EQ(driver_.opens.size(), 1U);
  EXPECT_TRUE(driver_.requests.empty());
}

TEST_F(TransportTest, SizesThatLieEndTheRead) {
  struct Case {
    const char* what;
    Bytes bytes;
    DWORD returned;
    const char* story;
  };
  const Case cases[] = {
      {"size 0", {0, 0, 0, 0}, 4, "size 0, read 0"},
      {"no size", {132, 0, 0, 0}, 0, "size 0"},
      {"half a size", {132, 0, 0, 0}, 2, "size 0"},
      {"a byte less than the set has", {131, 0, 0, 0}, 4, "size 0, read 0"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    driver_.requests.clear();
    AnswerWith(scripted::kSizeOfCurrent, row.bytes, row.returned);
    EXPECT_EQ(Exchange(), 0U);
    EXPECT_EQ(driver_.Story(), row.story);
  }
}

TEST_F(TransportTest, LargestSizeIsNoReasonToCrash) {
  AnswerWith(scripted::kSizeOfCurrent, {0xFF, 0xFF, 0xFF, 0xFF}, 4);
  // Whether four gigabytes are to be had is the host's business.
  const bool succeeded = Exchange() == 1;
  EXPECT_EQ(driver_.Story(), succeeded ? "size 0, read 0, write 0" : "size 0");
  EXPECT_EQ(driver_.sets[scripted::kPortSet].size(), 132U);
}

TEST_F(TransportTest, ListThatCannotBeHadIsToldOnTheStandardOutput) {
  // The first list is that of the devices, the second that of the interfaces.
  machine_.Calls().Inject({.function = "SetupDiGetClassDevsW", .from = 2, .error = ERROR_NOT_ENOUGH_MEMORY});
  testing::internal::CaptureStdout();
  const auto result = Exchange();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "SetupDiGetClassDevs failed: 8\n");
  EXPECT_EQ(result, 0U);
  EXPECT_TRUE(driver_.opens.empty());
}

TEST_F(TransportTest, StreamsThatLieEndTheReadWithoutAWrite) {
  const Bytes whole = driver_.sets[scripted::kPortSet];
  for (const DWORD returned : {0U, 3U, 4U, 131U}) {
    SCOPED_TRACE(returned);
    driver_.requests.clear();
    AnswerWith(scripted::kCurrent, whole, returned);
    EXPECT_EQ(Exchange(), 0U);
    EXPECT_EQ(driver_.Story(), "size 0, read 0");
  }
}

TEST_F(TransportTest, SetThatGrowsBetweenSizeAndReadIsNotReadAgain) {
  driver_.script = [this](const DriverRequest& request) -> std::optional<DriverAnswer> {
    if (request.code == scripted::kCurrent) driver_.sets[scripted::kPortSet].resize(136);
    return std::nullopt;
  };
  EXPECT_EQ(Exchange(), 0U);
  EXPECT_EQ(driver_.Story(), "size 0, read 0");
}

TEST_F(TransportTest, SurplusIsLeftUnread) {
  driver_.sets[scripted::kPortSet].resize(140, 0xEE);
  ASSERT_EQ(Exchange(), 1U);
  EXPECT_EQ(driver_.requests.back().input.size(), 8U + 132);
}

TEST_F(TransportTest, TextsThatLieEndTheReadWithoutAWrite) {
  const auto numbers = scripted::Numbers(scripted::bus::kCount, 0x100);
  const Bytes good = scripted::BusStream(numbers, "TCP", "QX");
  const auto changed = [&](std::size_t fromEnd, std::uint8_t byte) {
    Bytes bytes = good;
    bytes[bytes.size() - fromEnd] = byte;
    return bytes;
  };
  const Bytes streams[] = {
      scripted::BusStream(numbers, "TCP", "QX\xE9"),
      changed(1, 'X'),   // no terminator
      changed(2, 0),     // text shorter than its length
      changed(7, 1),     // length shorter than its text
      changed(4, 0xFF),  // length of four gigabytes
  };
  for (const Bytes& stream : streams) {
    SCOPED_TRACE(&stream - streams);
    driver_.requests.clear();
    driver_.sets[scripted::kBusSet] = stream;
    EXPECT_EQ(networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 0, 0), 0U);
    EXPECT_EQ(driver_.Story(), "size 1, read 1");
  }
}

TEST_F(TransportTest, InterfaceIsFoundByItsReferenceWhateverItsCase) {
  workbench::DeviceInterface& instance = *Port().interfaces.front();
  for (wchar_t& c : instance.path) c = static_cast<wchar_t>(std::towupper(c));
  ASSERT_EQ(Exchange(), 1U);
  ASSERT_FALSE(driver_.opens.empty());
  EXPECT_EQ(driver_.opens.back().path, instance.path);

  const std::wstring reference = instance.path.substr(instance.path.rfind(L'\\') + 1);
  instance.path = reference;
  driver_.opens.clear();
  machine_.Calls().ClearLog();
  EXPECT_EQ(Exchange(), 0U) << "the whole path was compared, found, and cannot be opened";
  const auto opens = machine_.Calls().CallsOf("CreateFileW");
  ASSERT_EQ(opens.size(), 1U);
  EXPECT_EQ(opens[0].Text(0), reference);
}

TEST_F(TransportTest, InterfaceOfAnotherDeviceIsNotTaken) {
  workbench::DeviceInterface& instance = *Port().interfaces.front();
  instance.path += L"0";  // the reference of another driver key
  EXPECT_EQ(Exchange(), 0U);
  EXPECT_EQ(machine_.Calls().CountOf("CreateFileW"), 0U);
}

}  // namespace
