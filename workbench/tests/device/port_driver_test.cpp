// The simulated drivers: the streams byte by byte, what they refuse, and how they misbehave on request.
#include "workbench/tests/device/driver_requests.h"

#include <gmock/gmock.h>

#include <numeric>

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Operation = DriverFault::Operation;

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
  EXPECT_EQ(driver_.Open(++session_, kAgreedOpen), DWORD{ERROR_ACCESS_DENIED});
  EXPECT_EQ(driver_.OpenSessions(), 0u);
  EXPECT_THAT(driver_.Violations(), IsEmpty());
}

}  // namespace
}  // namespace workbench
