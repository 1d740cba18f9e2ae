// The simulated driver of a port: what it refuses.
#include "workbench/simulated_driver/port_driver.h"

#include <gmock/gmock.h>

#include <optional>
#include <vector>

namespace workbench {
namespace {

using testing::SizeIs;
using Bytes = std::vector<std::byte>;

constexpr DriverOpen kAgreedOpen{
    .path = {}, .access = 0xC0000000, .disposition = OPEN_EXISTING, .flags = 0x40000000};

Bytes Header(std::uint32_t selector, std::uint32_t mark = 0xFFFFFFFF) {
  Bytes header;
  for (const std::uint32_t number : {selector, mark}) {
    for (unsigned shift = 0; shift < 32; shift += 8)
      header.push_back(static_cast<std::byte>(number >> shift));
  }
  return header;
}

// A header and a set as it is, or with the byte at `spoilt` changed to `value`, or cut or extended by
// `surplus`.
Bytes Write(std::uint32_t selector, int surplus = 0, std::size_t spoilt = 0, int value = 0) {
  Bytes bytes = Header(selector);
  const Bytes stream = ParameterValues(selector).Encode();
  bytes.insert(bytes.end(), stream.begin(), stream.end());
  if (spoilt != 0) bytes.at(8 + spoilt) = static_cast<std::byte>(value);
  bytes.resize(static_cast<std::size_t>(static_cast<int>(bytes.size()) + surplus));
  return bytes;
}

struct RequestRow {
  const char* name;
  std::optional<std::uint32_t> sizeOf;  // the size of this current set is asked for first
  DWORD code;
  Bytes input;
  std::size_t outputLength;
  bool accepted;
};

std::vector<RequestRow> RequestRows() {
  constexpr auto none = std::nullopt;
  constexpr auto port = kPortSet;
  constexpr auto bus = kBusSet;
  return {
      {"port's set", port, kGetCurrent, Header(port), 132, true},
      {"write of the bus's set", none, kSetCurrent, Write(bus), 0, true},
      {"unused code", none, 0x8001E00C, Header(port), 4, false},
      {"no input", none, kGetCurrentSize, {}, 4, false},
      {"wrong mark", none, kGetCurrentSize, Header(port, 0xFFFFFFFE), 4, false},
      {"read of the other set", port, kGetCurrent, Header(bus), 151, false},
      {"read into too little", port, kGetCurrent, Header(port), 131, false},
      {"write with an output buffer", none, kSetCurrent, Write(port), 4, false},
      {"text one longer than it is", none, kSetCurrent, Write(bus, 0, 24, 4), 0, false},
      {"text without its zero", none, kSetCurrent, Write(bus, 0, 31, 'x'), 0, false},
      {"not a 7-bit character", none, kSetCurrent, Write(bus, 0, 28, 0xE4), 0, false},
  };
}

class PortDriverTest : public testing::Test {
 protected:
  PortDriverTest() { Reopen(); }

  void Reopen() {
    if (driver_.OpenSessions()) driver_.Close(session_);
    ASSERT_EQ(driver_.Open(++session_, kAgreedOpen), DWORD{ERROR_SUCCESS});
  }
  DriverAnswer Send(DWORD code, const Bytes& input, std::span<std::byte> output = {}) {
    return driver_.Control(session_, {.code = code, .input = input, .output = output});
  }
  bool AskSize(std::uint32_t selector) {
    Bytes size(4);
    return Send(kGetCurrentSize, Header(selector), size).error == ERROR_SUCCESS;
  }

  PortDriver driver_;
  std::uint64_t session_ = 0;
};

TEST_F(PortDriverTest, RefusesAnOpenThatIsNotAsAgreed) {
  const struct {
    const char* name;
    void (*spoil)(DriverOpen&);
  } rows[] = {
      {"read only", [](DriverOpen& o) { o.access = GENERIC_READ; }},
      {"shared", [](DriverOpen& o) { o.share = FILE_SHARE_READ; }},
      {"not overlapped", [](DriverOpen& o) { o.flags = 0; }},
  };
  driver_.Close(session_);
  std::size_t violations = 0;
  for (const auto& row : rows) {
    DriverOpen open = kAgreedOpen;
    row.spoil(open);
    EXPECT_NE(driver_.Open(++session_, open), DWORD{ERROR_SUCCESS}) << row.name;
    EXPECT_THAT(driver_.Violations(), SizeIs(++violations)) << row.name;
  }
  Reopen();
  EXPECT_NE(driver_.Open(session_ + 1, kAgreedOpen), DWORD{ERROR_SUCCESS}) << "open already";
  EXPECT_EQ(driver_.OpenSessions(), 1u);
}

TEST_F(PortDriverTest, RefusesAndRecordsEveryMalformedRequest) {
  const ParameterValues before = driver_.Current(kPortSet);
  std::size_t violations = 0;
  for (const RequestRow& row : RequestRows()) {
    SCOPED_TRACE(row.name);
    Reopen();
    if (row.sizeOf) {
      EXPECT_TRUE(AskSize(*row.sizeOf));
    }
    Bytes output(row.outputLength);
    const DriverAnswer answer = Send(row.code, row.input, output);
    EXPECT_EQ(answer.error, row.accepted ? DWORD{ERROR_SUCCESS} : DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(answer.returned, row.accepted ? row.outputLength : 0);
    if (!row.accepted) ++violations;
    EXPECT_THAT(driver_.Violations(), SizeIs(violations));
  }
  Bytes size(4);
  const Bytes header = Header(kPortSet);
  const DriverRequest overlapped{
      .code = kGetCurrentSize, .input = header, .output = size, .overlapped = true};
  EXPECT_EQ(driver_.Control(session_, overlapped).error, DWORD{ERROR_INVALID_PARAMETER});
  EXPECT_THAT(driver_.Violations(), SizeIs(violations + 1));
  EXPECT_EQ(driver_.Current(kPortSet), before);
}

}  // namespace
}  // namespace workbench
