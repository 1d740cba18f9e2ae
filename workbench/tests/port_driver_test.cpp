// The simulated driver of a port: what it refuses, and why.
#include "workbench/simulated_driver/port_driver.h"

#include <gmock/gmock.h>

#include <cstring>
#include <vector>

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Bytes = std::vector<std::byte>;

constexpr DriverOpen kAgreedOpen{.path = {},
                                 .access = GENERIC_READ | GENERIC_WRITE,
                                 .disposition = OPEN_EXISTING,
                                 .flags = FILE_FLAG_OVERLAPPED};

Bytes Header(std::uint32_t selector, std::uint32_t mark = 0xFFFFFFFF) {
  const std::uint32_t numbers[] = {selector, mark};
  Bytes header(sizeof numbers);
  std::memcpy(header.data(), numbers, sizeof numbers);
  return header;
}

// A header and the bus's set with another byte at `place`, which is in its first text.
Bytes SpoiltSet(std::size_t place, int value) {
  Bytes bytes = Header(kBusSet);
  const Bytes stream = ParameterValues(kBusSet).Encode();
  bytes.insert(bytes.end(), stream.begin(), stream.end());
  bytes.at(bytes.size() - stream.size() + place) = static_cast<std::byte>(value);
  return bytes;
}

TEST(PortDriverTest, RefusesAnOpenThatIsNotAsAgreed) {
  DriverOpen readOnly = kAgreedOpen, shared = kAgreedOpen, synchronous = kAgreedOpen;
  readOnly.access = GENERIC_READ;
  shared.share = FILE_SHARE_READ;
  synchronous.flags = 0;
  PortDriver driver;
  for (const DriverOpen& open : {readOnly, shared, synchronous})
    EXPECT_NE(driver.Open(1, open), DWORD{ERROR_SUCCESS});
  EXPECT_EQ(driver.Open(1, kAgreedOpen), DWORD{ERROR_SUCCESS});
  EXPECT_NE(driver.Open(2, kAgreedOpen), DWORD{ERROR_SUCCESS});
  EXPECT_THAT(driver.Violations(), ElementsAre(HasSubstr("access 0x80000000"), HasSubstr("share 0x1"),
                                               HasSubstr("flags 0x0"), HasSubstr("while it was open")));
}

TEST(PortDriverTest, RefusesAndRecordsEveryMalformedRequest) {
  const struct {
    const char* complaint;
    DWORD code;
    Bytes input;
    std::size_t outputLength;
    bool overlapped = false;
  } rows[] = {
      {"unknown code 0x8001e00c", 0x8001E00C, Header(kPortSet), 4},
      {"with 0 bytes of input", kGetCurrentSize, {}, 4},
      {"0xfffffffe where the header has", kGetCurrentSize, Header(kPortSet, 0xFFFFFFFE), 4},
      {"with an OVERLAPPED structure", kGetCurrentSize, Header(kPortSet), 4, true},
      {"without asking for its size", kGetCurrent, Header(kBusSet), 151},
      {"131 bytes to read a set of 132", kGetCurrent, Header(kPortSet), 131},
      {"a write with an output buffer", kSetCurrent, Header(kPortSet), 4},
      {"breaks at InterfaceType", kSetCurrent, SpoiltSet(24, 4), 0},     // one longer than it is
      {"breaks at InterfaceType", kSetCurrent, SpoiltSet(31, 'x'), 0},   // without its zero
      {"breaks at InterfaceType", kSetCurrent, SpoiltSet(28, 0xE4), 0},  // not a 7-bit character
  };
  PortDriver driver;
  ASSERT_EQ(driver.Open(1, kAgreedOpen), DWORD{ERROR_SUCCESS});
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "row " << &row - rows << ": " << row.complaint);
    Bytes size(4);
    const Bytes port = Header(kPortSet);
    EXPECT_EQ(driver.Control(1, {.code = kGetCurrentSize, .input = port, .output = size}).error,
              DWORD{ERROR_SUCCESS});
    Bytes output(row.outputLength);
    const DriverRequest request{row.code, row.input, output, row.overlapped};
    ASSERT_EQ(driver.Control(1, request).error, DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_THAT(driver.Violations().back(), HasSubstr(row.complaint));
  }
  EXPECT_TRUE(driver.Writes().empty());
}

}  // namespace
}  // namespace workbench
