#include "status/port_status.h"

#include <cstdint>
#include <iterator>

#include "base/decimal.h"
#include "config/port_type.h"
#include "config/settings_rules.h"
#include "status/serial_words.h"

namespace {

constexpr wchar_t kModeRs422485[] = L"RS422/485";

constexpr const wchar_t* kStates[] = {L"Idle", L"Connected", L"Tunneling"};
constexpr const wchar_t* kModes[] = {L"RS232", kModeRs422485, L"RS232/422/485", L"I/O Control"};

// The word for a value that is exactly one digit of the table, else `otherwise`.
template <std::size_t count>
const wchar_t* WordForDigit(const wchar_t* const (&words)[count], const CWideString& value,
                            const wchar_t* otherwise) {
  const std::wstring_view text = value.View();
  if (text.size() != 1 || text[0] < L'0') return otherwise;
  const auto digit = static_cast<std::size_t>(text[0] - L'0');
  return digit < count ? words[digit] : otherwise;
}

// Compared as unsigned everywhere below: "-1" is a large number and in no range.
// Kept on purpose: text for a number
std::uint32_t NumberOf(const CWideString& value) noexcept {
  return static_cast<std::uint32_t>(ParseDecimal(value.View()));
}

// "%d" of a setting, as the system writes numbers in texts.
CWideString Decimal(std::uint32_t value) {
  return CWideString::Format(L"%d", static_cast<std::int32_t>(value));
}

// Reads one document into one port's settings, row by row.
class CStatusReader {
 public:
  CStatusReader(const CWideString& document, CVcpParameters& port, CKdNBusUserModeInterface& bus)
      : document_(document), port_(port), bus_(bus) {}

  [[nodiscard]] PortStatus Read() {
    PortStatus status;
    status.baudRate = BaudRate();
    status.dataBits = DataBits();
    status.parity = Parity();
    status.stopBits = StopBits();
    status.flowControl = FlowControl();
    status.duplex = Duplex();
    status.state = WordForDigit(kStates, Tag(L"<state>", L"</state>").value_or(CWideString()), L"Offline");
    status.mode = Mode();
    ReadLine(L"<ctsline>", L"</ctsline>", port_.CtsSupported);
    ReadLine(L"<dsrline>", L"</dsrline>", port_.DsrSupported);
    DecideVisibility(status);
    return status;
  }

 private:
  [[nodiscard]] std::optional<CWideString> Tag(std::wstring_view open, std::wstring_view close) const {
    return ExtractTagValue(document_, open, close);
  }

  CWideString BaudRate() {
    const auto value = Tag(L"<baud>", L"</baud>");
    if (!value) return Decimal(port_.Baudrate);
    port_.Baudrate = NumberOf(*value);
    return *value;
  }

  CWideString DataBits() {
    const auto value = Tag(L"<datasize>", L"</datasize>");
    if (!value) return DataBitsIndexToText(port_.Databits);
    StoreUpTo(port_.Databits, NumberOf(*value), 3);
    return *value;
  }

  CWideString Parity() {
    const auto value = Tag(L"<parity>", L"</parity>");
    if (!value) return ParityIndexToText(port_.Parity);
    // Kept on purpose: parity into data bits
    StoreUpTo(port_.Databits, ParityCodeToIndex(NumberOf(*value)), 3);
    return ParityCodeToText(value->View());
  }

  CWideString StopBits() {
    const auto value = Tag(L"<stopbits>", L"</stopbits>");
    if (!value) return StopBitsIndexToText(port_.Stopbits);
    StoreUpTo(port_.Stopbits, StopBitsCodeToIndex(NumberOf(*value)), 2);
    return StopBitsCodeToText(value->View());
  }

  CWideString FlowControl() {
    const auto value = Tag(L"<flowcontrol>", L"</flowcontrol>");
    if (!value) return FlowControlIndexToText(port_.FlowControl);
    port_.FlowControl = FlowControlCodeToIndex(NumberOf(*value));
    return FlowControlCodeToText(value->View());
  }

  CWideString Duplex() {
    const auto value = Tag(L"<duplex>", L"</duplex>");
    if (!value) return DuplexIndexToText(port_.DuplexMode);
    port_.DuplexMode = DuplexCodeToIndex(NumberOf(*value));
    return DuplexCodeToText(value->View());
  }

  CWideString Mode() {
    const std::uint32_t bit = PortBit(bus_.SerialPortIndex);
    // Kept on purpose: whole mask
    const CWideString value = Tag(L"<portmode>", L"</portmode>").value_or(Decimal(bus_.PortType >> bit));
    if (value == L"1") ApplyRs422485(std::uint32_t{1} << bit);
    return CWideString(WordForDigit(kModes, value, L"Unknown"));
  }

  // The port driver's own type is 0 or 1. Kept on purpose: type and mask
  void ApplyRs422485(std::uint32_t mask) noexcept {
    bus_.PortType |= mask;
    if ((port_.PortType & mask) != 0 || (port_.PortType | mask) > 1) return;
    port_.PortType |= mask;
    if (port_.DuplexMode == 0) port_.DuplexMode = kDuplexRs422;
  }

  void ReadLine(std::wstring_view open, std::wstring_view close, std::uint32_t& supported) const {
    if (const auto value = Tag(open, close)) {
      supported = NumberOf(*value) != 0 ? 1 : 0;
    } else {
      supported = supported != 0 ? 1 : 0;
    }
  }

  void DecideVisibility(PortStatus& status) const {
    const std::uint32_t index = bus_.SerialPortIndex;
    const bool isRs422485 = IsRs422485Port(port_.PortType, index);
    status.showDuplex = isRs422485 || IsRs422485Port(bus_.PortType, index) || status.mode == kModeRs422485;
    status.boxes = HandshakeAfterRefresh(port_, index);
    const bool ctsOverridden = status.boxes.cts.checked.value_or(false) && port_.CtsSupported != 0;
    const bool dsrOverridden = status.boxes.dsr.checked.value_or(false) && port_.DsrSupported != 0;
    status.showOverrideMarks = !isRs422485 && (ctsOverridden || dsrOverridden);
  }

  const CWideString& document_;
  CVcpParameters& port_;
  CKdNBusUserModeInterface& bus_;
};

}  // namespace

std::optional<CWideString> ExtractTagValue(const CWideString& text, std::wstring_view openTag,
                                           std::wstring_view closeTag) {
  const std::size_t open = text.Find(openTag);
  const std::size_t close = text.Find(closeTag);
  if (open == CWideString::kNotFound || close == CWideString::kNotFound || close <= open) return std::nullopt;
  const std::size_t from = open + openTag.size();
  const std::size_t end = text.Find(closeTag, from);
  return text.Mid(from, end == CWideString::kNotFound ? end : end - from);
}

PortStatus ApplyStatusDocument(const CWideString& document, CVcpParameters& port,
                               CKdNBusUserModeInterface& bus) {
  return CStatusReader(document, port, bus).Read();
}
