// The simulated drivers: the streams byte by byte, what they refuse, and how they misbehave on request.
#include "workbench/drivers/port_driver.h"

#include <gmock/gmock.h>

#include <numeric>

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Bytes = std::vector<std::byte>;
using Operation = DriverFault::Operation;

constexpr DriverOpen kOpen{
    .path = {}, .access = 0xC0000000, .disposition = OPEN_EXISTING, .flags = 0x40000000};

Bytes Header(std::uint32_t selector, std::uint32_t mark = 0xFFFFFFFF) {
  Bytes header;
  for (const std::uint32_t number : {selector, mark}) {
    for (unsigned shift = 0; shift < 32; shift += 8)
      header.push_back(static_cast<std::byte>(number >> shift));
  }
  return header;
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
    ASSERT_EQ(driver_.Open(++session_, kOpen), DWORD{ERROR_SUCCESS});
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

TEST_F(PortDriverTest, KeepsCurrentAndDefaultApartAndTakesWrites) {
  driver_.Default(kPortSet).SetNumber("Baudrate", 1200);
  ParameterValues wanted = driver_.Current(kPortSet);
  wanted.SetNumber("Baudrate", 57600);
  Bytes input = Header(kPortSet);
  const Bytes stream = wanted.Encode();
  input.insert(input.end(), stream.begin(), stream.end());
  EXPECT_EQ(Send(kSetCurrent, input).error, DWORD{ERROR_SUCCESS});
  EXPECT_EQ(NumberAt(Read(kGetCurrentSize, kPortSet), 16), 57600u);
  EXPECT_EQ(NumberAt(Read(kGetDefaultSize, kPortSet), 16), 1200u);
  ASSERT_THAT(driver_.Writes(), SizeIs(1));
  EXPECT_THAT(Differences(driver_.Writes()[0], driver_.Default(kPortSet)),
              ElementsAre("Baudrate 57600 -> 1200"));
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
    DriverOpen open = kOpen;
    row.spoil(open);
    EXPECT_NE(driver_.Open(++session_, open), DWORD{ERROR_SUCCESS}) << row.name;
    EXPECT_THAT(driver_.Violations(), SizeIs(++violations)) << row.name;
  }
  Reopen();
  EXPECT_NE(driver_.Open(session_ + 1, kOpen), DWORD{ERROR_SUCCESS}) << "open already";
  EXPECT_EQ(driver_.OpenSessions(), 1u);
}

TEST_F(PortDriverTest, RefusesAndRecordsEveryMalformedRequest) {
  Bytes four(4), three(3), set(132), tooLong(133);
  Bytes longHeader = Header(0), shortHeader = Header(0);
  longHeader.push_back(std::byte{0});
  shortHeader.pop_back();
  Bytes write = Header(kPortSet), shortWrite, longWrite;
  write.resize(8 + 132);
  shortWrite = longWrite = write;
  shortWrite.pop_back();
  longWrite.push_back(std::byte{0});
  const struct {
    const char* name;
    bool sizeFirst;
    DWORD code;
    Bytes input;
    std::span<std::byte> output;
    bool overlapped = false;
  } rows[] = {
      {"unused code", false, 0x8001E00C, Header(0), four},
      {"code beyond the last", false, 0x8001E018, Header(0), four},
      {"no input", false, kGetCurrentSize, {}, four},
      {"input too short", false, kGetCurrentSize, shortHeader, four},
      {"input too long", false, kGetDefaultSize, longHeader, four},
      {"third set", false, kGetCurrentSize, Header(2), four},
      {"wrong mark", false, kGetCurrentSize, Header(0, 0xFFFFFFFE), four},
      {"size into 3 bytes", false, kGetCurrentSize, Header(0), three},
      {"size into nothing", false, kGetCurrentSize, Header(0), {}},
      {"overlapped", false, kGetCurrentSize, Header(0), four, true},
      {"read without size", false, kGetCurrent, Header(0), set},
      {"read of the other set", true, kGetCurrent, Header(1), set},
      {"defaults after current size", true, kGetDefault, Header(0), set},
      {"read into too much", true, kGetCurrent, Header(0), tooLong},
      {"read into too little", true, kGetCurrent, Header(0), three},
      {"write too short", false, kSetCurrent, shortWrite, {}},
      {"write too long", false, kSetCurrent, longWrite, {}},
      {"write of a header", false, kSetCurrent, Header(0), {}},
      {"write with output", false, kSetCurrent, write, four},
  };
  const ParameterValues before = driver_.Current(kPortSet);
  std::size_t violations = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Reopen();
    if (row.sizeFirst) {
      EXPECT_EQ(Size(kGetCurrentSize, kPortSet), 132u);
    }
    const DriverAnswer answer = driver_.Control(
        session_, {.code = row.code, .input = row.input, .output = row.output, .overlapped = row.overlapped});
    EXPECT_EQ(answer.error, DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(answer.returned, 0u);
    EXPECT_THAT(driver_.Violations(), SizeIs(++violations));
  }
  EXPECT_EQ(driver_.Current(kPortSet), before);
  EXPECT_EQ(driver_.Control(session_ + 9, {.code = kGetCurrentSize, .input = {}, .output = {}}).error,
            DWORD{ERROR_INVALID_PARAMETER})
      << "a session that was never opened";
}

TEST_F(PortDriverTest, DecodesNothingButAWholeSet) {
  const Bytes good = ParameterValues(kBusSet).Encode();
  const struct {
    const char* name;
    std::size_t offset;
    int value;
  } rows[] = {
      {"length one less: the terminator is not where it should be", 24, 2},
      {"length one more", 24, 4},
      {"length beyond the stream", 27, 0x7F},
      {"no terminator", 31, 'x'},
      {"not a 7-bit character", 28, 0xE4},
      {"a zero inside the text", 29, 0},
  };
  std::string fault;
  EXPECT_EQ(ParameterValues::Decode(kBusSet, good, fault), ParameterValues(kBusSet)) << fault;
  for (const auto& row : rows) {
    Bytes bad = good;
    bad[row.offset] = static_cast<std::byte>(row.value);
    EXPECT_FALSE(ParameterValues::Decode(kBusSet, bad, fault)) << row.name;
  }
  for (std::size_t length = 0; length < good.size(); ++length) {
    EXPECT_FALSE(ParameterValues::Decode(kBusSet, std::span(good).first(length), fault)) << length;
  }
}

TEST_F(PortDriverTest, MisbehavesAsTold) {
  DriverAnswer answer;
  driver_.Inject({.operation = Operation::Size, .misbehaviour = Misbehaviour::ReportSize, .value = 0});
  EXPECT_THAT(Read(kGetCurrentSize, kPortSet, answer), IsEmpty());
  EXPECT_EQ(answer.returned, 0u);

  driver_.ClearFaults();
  driver_.Inject({.operation = Operation::Size, .misbehaviour = Misbehaviour::ReportSize, .value = 140});
  EXPECT_EQ(NumberAt(Read(kGetCurrentSize, kPortSet), 136), 0xEEEEEEEEu) << "a long answer";

  driver_.ClearFaults();
  driver_.Inject({.misbehaviour = Misbehaviour::GrowAfterSize});
  (void)Read(kGetCurrentSize, kPortSet, answer);
  EXPECT_EQ(answer.error, DWORD{ERROR_INSUFFICIENT_BUFFER});

  driver_.ClearFaults();
  driver_.Inject({.misbehaviour = Misbehaviour::ShortAnswer, .value = 5});
  (void)Read(kGetCurrentSize, kPortSet, answer);
  EXPECT_EQ(answer.returned, 127u);

  driver_.ClearFaults();
  driver_.Inject({.misbehaviour = Misbehaviour::LieAboutCount, .value = 9999});
  (void)Read(kGetCurrentSize, kPortSet, answer);
  EXPECT_EQ(answer.returned, 9999u);

  driver_.ClearFaults();
  driver_.Inject({.misbehaviour = Misbehaviour::TextLength, .value = 0xFFFFFFFF, .selector = kBusSet});
  EXPECT_EQ(NumberAt(Read(kGetCurrentSize, kBusSet), 24), 0xFFFFFFFFu);
  EXPECT_EQ(Read(kGetCurrentSize, kPortSet), driver_.Current(kPortSet).Encode()) << "the other set";

  driver_.ClearFaults();
  driver_.Inject({.misbehaviour = Misbehaviour::Garbage, .value = 3});
  EXPECT_NE(Read(kGetCurrentSize, kPortSet), driver_.Current(kPortSet).Encode());
  EXPECT_THAT(driver_.Violations(), IsEmpty());
  EXPECT_THROW(driver_.Inject({.operation = Operation::Write, .misbehaviour = Misbehaviour::Garbage}),
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
  EXPECT_EQ(driver_.Open(++session_, kOpen), DWORD{ERROR_ACCESS_DENIED});
  EXPECT_EQ(driver_.OpenSessions(), 0u);
  EXPECT_THAT(driver_.Violations(), IsEmpty());
}

}  // namespace
}  // namespace workbench
