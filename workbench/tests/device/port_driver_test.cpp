// The simulated drivers: the streams byte by byte, what they refuse, and how they misbehave on request.
#include "workbench/simulated_driver/port_driver.h"

#include <gmock/gmock.h>

#include <optional>
#include <vector>

namespace workbench {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using Operation = DriverFault::Operation;
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
      {"size of the port's set", none, kGetCurrentSize, Header(port), 4, true},
      {"size of the bus's defaults", none, kGetDefaultSize, Header(bus), 4, true},
      {"port's set", port, kGetCurrent, Header(port), 132, true},
      {"bus's set", bus, kGetCurrent, Header(bus), 151, true},
      {"write of the port's set", none, kSetCurrent, Write(port), 0, true},
      {"write of the bus's set", none, kSetCurrent, Write(bus), 0, true},
      {"unused code", none, 0x8001E00C, Header(port), 4, false},
      {"code beyond the last", none, 0x8001E018, Header(port), 4, false},
      {"no input", none, kGetCurrentSize, {}, 4, false},
      {"a byte less than a header", none, kGetCurrentSize, Write(port, -133), 4, false},
      {"a byte more than a header", none, kGetDefaultSize, Write(port, -131), 4, false},
      {"third set", none, kGetCurrentSize, Header(2), 4, false},
      {"wrong mark", none, kGetCurrentSize, Header(port, 0xFFFFFFFE), 4, false},
      {"size into 3 bytes", none, kGetCurrentSize, Header(port), 3, false},
      {"size into 8 bytes", none, kGetCurrentSize, Header(port), 8, false},
      {"size into nothing", none, kGetCurrentSize, Header(port), 0, false},
      {"read without size", none, kGetCurrent, Header(port), 132, false},
      {"read of the other set", port, kGetCurrent, Header(bus), 151, false},
      {"defaults after the current size", port, kGetDefault, Header(port), 132, false},
      {"read into too much", port, kGetCurrent, Header(port), 133, false},
      {"read into too little", port, kGetCurrent, Header(port), 131, false},
      {"write of a header", none, kSetCurrent, Header(port), 0, false},
      {"write a byte short", none, kSetCurrent, Write(port, -1), 0, false},
      {"write a byte long", none, kSetCurrent, Write(bus, 1), 0, false},
      {"write with an output buffer", none, kSetCurrent, Write(port), 4, false},
      {"text one shorter than it is", none, kSetCurrent, Write(bus, 0, 24, 2), 0, false},
      {"text one longer than it is", none, kSetCurrent, Write(bus, 0, 24, 4), 0, false},
      {"text longer than the set", none, kSetCurrent, Write(bus, 0, 27, 0x7F), 0, false},
      {"text without its zero", none, kSetCurrent, Write(bus, 0, 31, 'x'), 0, false},
      {"a zero inside a text", none, kSetCurrent, Write(bus, 0, 29, 0), 0, false},
      {"not a 7-bit character", none, kSetCurrent, Write(bus, 0, 28, 0xE4), 0, false},
  };
}

std::uint32_t NumberAt(const Bytes& bytes, std::size_t offset) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i-- > 0;)
    number = number << 8 | std::to_integer<std::uint32_t>(bytes.at(offset + i));
  return number;
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
  std::optional<std::uint32_t> Size(DWORD code, std::uint32_t selector) {
    Bytes size(4);
    const DriverAnswer answer = Send(code, Header(selector), size);
    if (answer.error) return std::nullopt;
    EXPECT_EQ(answer.returned, 4u);
    return NumberAt(size, 0);
  }
  // The whole exchange; `returned` tells what the driver says it gave.
  Bytes Read(DWORD sizeCode, std::uint32_t selector, DriverAnswer& answer) {
    Bytes set(Size(sizeCode, selector).value_or(0));
    answer = Send(sizeCode + 4, Header(selector), set);
    return set;
  }
  Bytes Read(DWORD sizeCode, std::uint32_t selector) {
    DriverAnswer answer;
    Bytes set = Read(sizeCode, selector, answer);
    EXPECT_EQ(answer.error, DWORD{ERROR_SUCCESS});
    EXPECT_EQ(answer.returned, set.size());
    return set;
  }

  PortDriver driver_;
  std::uint64_t session_ = 0;
};

TEST_F(PortDriverTest, GivesBothSetsByteByByte) {
  driver_.Current(kPortSet).SetNumber("Baudrate", 0x04030201);
  driver_.Current(kPortSet).SetNumber("RiSupported", 7);
  const Bytes port = Read(kGetCurrentSize, kPortSet);
  ASSERT_THAT(port, SizeIs(132));
  EXPECT_EQ(port[16], std::byte{1});
  EXPECT_EQ(port[19], std::byte{4});
  EXPECT_EQ(NumberAt(port, 128), 7u);

  ParameterValues& bus = driver_.Current(kBusSet);
  bus.SetText("InterfaceType", "");
  bus.SetText("Model", "");
  EXPECT_THAT(Read(kGetCurrentSize, kBusSet), SizeIs(142));
  bus.SetText("InterfaceType", "UDP");
  bus.SetNumber("AddressToConnect", 0x7F000001);
  const Bytes stream = Read(kGetCurrentSize, kBusSet);
  ASSERT_THAT(stream, SizeIs(145));
  EXPECT_EQ(NumberAt(stream, 24), 3u);
  EXPECT_EQ(stream[28], std::byte{'U'});
  EXPECT_EQ(stream[31], std::byte{0});
  EXPECT_EQ(NumberAt(stream, 32), 0x7F000001u);
  EXPECT_THAT(driver_.Violations(), IsEmpty());
}

TEST_F(PortDriverTest, RefusesAnOpenThatIsNotAsAgreed) {
  const struct {
    const char* name;
    void (*spoil)(DriverOpen&);
  } rows[] = {
      {"read only", [](DriverOpen& o) { o.access = GENERIC_READ; }},
      {"shared", [](DriverOpen& o) { o.share = FILE_SHARE_READ; }},
      {"always", [](DriverOpen& o) { o.disposition = OPEN_ALWAYS; }},
      {"not overlapped", [](DriverOpen& o) { o.flags = 0; }},
      {"an attribute more", [](DriverOpen& o) { o.flags |= FILE_ATTRIBUTE_NORMAL; }},
      {"security", [](DriverOpen& o) { o.hasSecurity = true; }},
      {"template", [](DriverOpen& o) { o.hasTemplate = true; }},
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
      EXPECT_TRUE(Size(kGetCurrentSize, *row.sizeOf));
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
  const auto refusal = [&](std::uint64_t session, bool overlapped) {
    return driver_
        .Control(session,
                 {.code = kGetCurrentSize, .input = header, .output = size, .overlapped = overlapped})
        .error;
  };
  EXPECT_EQ(refusal(session_, true), DWORD{ERROR_INVALID_PARAMETER}) << "overlapped";
  EXPECT_EQ(refusal(session_ + 9, false), DWORD{ERROR_INVALID_PARAMETER}) << "a session never opened";
  EXPECT_THAT(driver_.Violations(), SizeIs(violations + 2));
  EXPECT_EQ(driver_.Current(kPortSet), before);
}

TEST_F(PortDriverTest, DecodesNothingButAWholeSet) {
  const Bytes good = ParameterValues(kBusSet).Encode();
  std::string fault;
  EXPECT_EQ(ParameterValues::Decode(kBusSet, good, fault), ParameterValues(kBusSet)) << fault;
  for (std::size_t length = 0; length < good.size(); ++length) {
    EXPECT_FALSE(ParameterValues::Decode(kBusSet, std::span(good).first(length), fault)) << length;
  }
}

TEST_F(PortDriverTest, MisbehavesAsItIsTold) {
  const struct {
    DriverFault fault;
    std::size_t length;  // of the set that is read, what the driver says it gave, and a number in it
    DWORD error, returned;
    std::size_t at;
    std::uint32_t number;
  } rows[] = {
      {{.operation = Operation::Size, .misbehaviour = Misbehaviour::ReportSize, .value = 0}, 0, 0, 0, 0, 0},
      {{.operation = Operation::Size, .misbehaviour = Misbehaviour::ReportSize, .value = 140},
       140,
       0,
       140,
       136,
       0xEEEEEEEE},
      {{.misbehaviour = Misbehaviour::GrowAfterSize}, 132, ERROR_INSUFFICIENT_BUFFER, 0, 0, 0},
      {{.misbehaviour = Misbehaviour::LieAboutCount, .value = 9999}, 132, 0, 9999, 4, 921600},
      {{.misbehaviour = Misbehaviour::TextLength, .value = 0xFFFFFFFF}, 132, 0, 132, 4, 921600},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(static_cast<int>(row.fault.misbehaviour));
    driver_.ClearFaults();
    driver_.Inject(row.fault);
    DriverAnswer answer;
    const Bytes set = Read(kGetCurrentSize, kPortSet, answer);
    EXPECT_EQ(set.size(), row.length);
    EXPECT_EQ(answer.error, row.error);
    EXPECT_EQ(answer.returned, row.returned);
    if (row.at != 0) {
      EXPECT_EQ(NumberAt(set, row.at), row.number);
    }
  }
  EXPECT_EQ(NumberAt(Read(kGetCurrentSize, kBusSet), 24), 0xFFFFFFFFu) << "the length of its first text";
  EXPECT_THROW(driver_.Inject({.operation = Operation::Write, .misbehaviour = Misbehaviour::TextLength}),
               std::invalid_argument);
}

TEST_F(PortDriverTest, RefusesTheNthRequest) {
  driver_.Inject(
      {.operation = Operation::Size, .value = ERROR_BUSY, .selector = kBusSet, .from = 2, .count = 1});
  EXPECT_TRUE(Size(kGetCurrentSize, kBusSet));
  EXPECT_TRUE(Size(kGetCurrentSize, kPortSet)) << "not counted";
  EXPECT_FALSE(Size(kGetCurrentSize, kBusSet));
  EXPECT_EQ(driver_.Records().back().error, DWORD{ERROR_BUSY});
  EXPECT_TRUE(Size(kGetCurrentSize, kBusSet));

  driver_.Inject({.operation = Operation::Write, .value = ERROR_WRITE_PROTECT});
  Bytes write = Header(kPortSet);
  write.resize(8 + 132);
  const ParameterValues before = driver_.Current(kPortSet);
  EXPECT_EQ(Send(kSetCurrent, write).error, DWORD{ERROR_WRITE_PROTECT});
  EXPECT_EQ(driver_.Current(kPortSet), before);

  driver_.Inject({.operation = Operation::Open, .value = ERROR_ACCESS_DENIED});
  driver_.Close(session_);
  EXPECT_EQ(driver_.Open(++session_, kAgreedOpen), DWORD{ERROR_ACCESS_DENIED});
  EXPECT_EQ(driver_.OpenSessions(), 0u);
  EXPECT_THAT(driver_.Violations(), IsEmpty());
}

}  // namespace
}  // namespace workbench
