#include "workbench/simulated_driver/port_driver.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace workbench {
namespace {

using Operation = DriverFault::Operation;

template <class... Parts>
std::string Join(const Parts&... parts) {
  std::ostringstream text;
  (text << ... << parts);
  return text.str();
}

std::string Hex(std::uint32_t number) {
  return Join("0x", std::hex, number);
}

constexpr std::size_t kHeaderLength = 8;
constexpr std::uint32_t kHeaderMark = 0xFFFFFFFF;

struct CodeRow {
  DWORD code;
  Operation operation;
  bool defaults;
  DWORD dataCode;  // of a size request: the request that reads what was announced
};
constexpr std::array kCodes = {
    CodeRow{kGetCurrentSize, Operation::Size, false, kGetCurrent},
    CodeRow{kGetCurrent, Operation::Read, false, 0},
    CodeRow{kSetCurrent, Operation::Write, false, 0},
    CodeRow{kGetDefaultSize, Operation::Size, true, kGetDefault},
    CodeRow{kGetDefault, Operation::Read, true, 0},
};

const CodeRow* RowOf(DWORD code) {
  const auto* row = std::ranges::find(kCodes, code, &CodeRow::code);
  return row == kCodes.end() ? nullptr : row;
}

std::uint32_t NumberAt(std::span<const std::byte> bytes, std::size_t offset) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}

void PutNumber(std::span<std::byte> bytes, std::size_t offset, std::uint32_t number) {
  std::memcpy(bytes.data() + offset, &number, sizeof number);
}

bool CanHave(Operation operation, Misbehaviour misbehaviour) {
  switch (misbehaviour) {
    case Misbehaviour::Refuse:
      return true;
    case Misbehaviour::LieAboutCount:
      return operation == Operation::Size || operation == Operation::Read;
    default:
      return operation == Operation::Read;
  }
}

}  // namespace

ParameterValues& PortDriver::Current(std::uint32_t selector) {
  return current_.at(selector);
}

ParameterValues& PortDriver::Default(std::uint32_t selector) {
  return default_.at(selector);
}

void PortDriver::Inject(const DriverFault& fault) {
  if (!CanHave(fault.operation, fault.misbehaviour)) throw std::invalid_argument("no such driver fault");
  faults_.push_back(fault);
}

std::vector<ParameterValues> PortDriver::Writes() const {
  std::vector<ParameterValues> writes;
  for (const DriverRecord& record : records_) {
    if (record.written) writes.push_back(*record.written);
  }
  return writes;
}

DWORD PortDriver::Open(std::uint64_t session, const DriverOpen& open) {
  DriverRecord record{.session = session};
  const bool asAgreed = open.access == (GENERIC_READ | GENERIC_WRITE) && open.share == 0 &&
                        open.disposition == OPEN_EXISTING && open.flags == FILE_FLAG_OVERLAPPED &&
                        !open.hasSecurity && !open.hasTemplate;
  if (!asAgreed) {
    record.error =
        Violate(Join("opened with access ", Hex(open.access), ", share ", Hex(open.share), ", disposition ",
                     open.disposition, ", flags ", Hex(open.flags), (open.hasSecurity ? ", security" : ""),
                     (open.hasTemplate ? ", template" : "")))
            .error;
  } else if (!sessions_.empty()) {
    // Opens do not share, and a client closes before it opens again.
    record.error = Violate("opened while it was open").error;
  } else if (const auto fault = Due(Operation::Open, std::nullopt)) {
    record.error = fault->value;
  } else {
    sessions_.emplace(session, std::nullopt);
  }
  records_.push_back(record);
  return record.error;
}

DriverAnswer PortDriver::Control(std::uint64_t session, const DriverRequest& request) {
  DriverRecord record{.session = session,
                      .code = request.code,
                      .inputLength = request.input.size(),
                      .outputLength = request.output.size()};
  const DriverAnswer answer = Answer(session, request, record);
  record.error = answer.error;
  record.returned = answer.returned;
  records_.push_back(record);
  return answer;
}

void PortDriver::Close(std::uint64_t session) {
  if (sessions_.erase(session) == 0) violations_.push_back(Join("session ", session, " closed, not open"));
}

DriverAnswer PortDriver::Answer(std::uint64_t session, const DriverRequest& request, DriverRecord& record) {
  if (!sessions_.contains(session)) return Violate(Join("session ", session, " is not open"));
  const CodeRow* row = RowOf(request.code);
  if (!row) return Violate(Join("unknown code ", Hex(request.code)));
  if (request.overlapped) return Violate(Join("code ", Hex(request.code), " with an OVERLAPPED structure"));
  if (request.input.size() < kHeaderLength ||
      (row->operation != Operation::Write && request.input.size() != kHeaderLength)) {
    return Violate(Join("code ", Hex(request.code), " with ", request.input.size(), " bytes of input"));
  }
  const std::uint32_t selector = NumberAt(request.input, 0);
  if (SetLayout(selector).empty()) return Violate(Join("there is no set ", selector));
  record.selector = selector;
  if (const std::uint32_t mark = NumberAt(request.input, 4); mark != kHeaderMark) {
    return Violate(Join(Hex(mark), " where the header has ", Hex(kHeaderMark)));
  }
  switch (row->operation) {
    case Operation::Size:
      return AnswerSize(session, request, selector);
    case Operation::Read:
      return AnswerRead(session, request, selector);
    default:
      return AnswerWrite(request, record);
  }
}

DriverAnswer PortDriver::AnswerSize(std::uint64_t session, const DriverRequest& request,
                                    std::uint32_t selector) {
  if (request.output.size() != 4) return Violate(Join(request.output.size(), " bytes for a size"));
  const CodeRow& row = *RowOf(request.code);
  const auto& values = row.defaults ? default_ : current_;
  const auto size = static_cast<std::uint32_t>(values.at(selector).Encode().size());
  DWORD returned = 4;
  if (const auto fault = Due(Operation::Size, selector)) {
    if (fault->misbehaviour == Misbehaviour::Refuse) return {fault->value, 0};
    returned = fault->value;
  }
  sessions_[session] = SizeReport{row.dataCode, selector, size};
  PutNumber(request.output, 0, size);
  return {ERROR_SUCCESS, returned};
}

DriverAnswer PortDriver::AnswerRead(std::uint64_t session, const DriverRequest& request,
                                    std::uint32_t selector) {
  const std::optional<SizeReport> report = std::exchange(sessions_[session], std::nullopt);
  if (!report || report->dataCode != request.code || report->selector != selector) {
    return Violate(Join("set ", selector, " read with ", Hex(request.code), " without asking for its size"));
  }
  if (request.output.size() != report->size) {
    return Violate(Join(request.output.size(), " bytes to read a set of ", report->size));
  }
  const auto& values = RowOf(request.code)->defaults ? default_ : current_;
  return Fill(request.output, values.at(selector).Encode(), Due(Operation::Read, selector));
}

// Gives the client its bytes, or what a fault makes of them.
DriverAnswer PortDriver::Fill(std::span<std::byte> output, const std::vector<std::byte>& stream,
                              const std::optional<DriverFault>& fault) const {
  if (fault && fault->misbehaviour == Misbehaviour::Refuse) return {fault->value, 0};
  const bool grew = fault && fault->misbehaviour == Misbehaviour::GrowAfterSize;
  if (grew || stream.size() != output.size()) return {ERROR_INSUFFICIENT_BUFFER, 0};
  std::ranges::copy(stream, output.begin());
  return {ERROR_SUCCESS, fault ? fault->value : static_cast<DWORD>(stream.size())};
}

DriverAnswer PortDriver::AnswerWrite(const DriverRequest& request, DriverRecord& record) {
  if (request.output.data() || !request.output.empty()) return Violate("a write with an output buffer");
  std::string complaint;
  auto values = ParameterValues::Decode(*record.selector, request.input.subspan(kHeaderLength), complaint);
  if (!values) return Violate(Join("set ", *record.selector, " written: ", complaint));
  if (const auto fault = Due(Operation::Write, record.selector)) return {fault->value, 0};
  current_.at(*record.selector) = *values;
  record.written = std::move(values);
  return {};
}

std::optional<DriverFault> PortDriver::Due(Operation operation, std::optional<std::uint32_t> selector) {
  for (const DriverFault& fault : faults_) {
    if (fault.operation == operation && (!selector || !fault.selector || fault.selector == selector))
      return fault;
  }
  return std::nullopt;
}

DriverAnswer PortDriver::Violate(std::string text) {
  violations_.push_back(std::move(text));
  return {ERROR_INVALID_PARAMETER, 0};
}

}  // namespace workbench
