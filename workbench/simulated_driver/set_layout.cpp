#include "workbench/simulated_driver/set_layout.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>

namespace workbench {
namespace {

constexpr std::array kPortLayout = {
    Parameter{"PortType", false, 0},
    Parameter{"MaxBaudRate", false, 921600},
    Parameter{"MinBaudRate", false, 75},
    Parameter{"DuplexMode", false, 0},
    Parameter{"Baudrate", false, 9600},
    Parameter{"Databits", false, 3},
    Parameter{"Parity", false, 0},
    Parameter{"Stopbits", false, 0},
    Parameter{"FlowControl", false, 0},
    Parameter{"LogLevel", false, 0},
    Parameter{"ReceiveTriggerLevel", false, 75},
    Parameter{"TransmitTriggerLevel", false, 10},
    Parameter{"FlowControlTriggerLevel", false, 85},
    Parameter{"SupportedBaudRates", false, 0x1007FFFF},
    Parameter{"SupportedParities", false, 0x1F00},
    Parameter{"SupportedDataBits", false, 0xF},
    Parameter{"SupportedStopBits", false, 0x7},
    Parameter{"SupportedFlowControls", false, 0xF},
    Parameter{"SupportedDuplexModes", false, 0x3},
    // Kept on purpose: OverridBaudRates
    Parameter{"OverridBaudRates", false, 0},
    Parameter{"OverrideDataBits", false, 0},
    Parameter{"OverrideParity", false, 0},
    Parameter{"OverrideStopbits", false, 0},
    Parameter{"OverrideFlowControl", false, 0},
    Parameter{"EmulateCTSTrue", false, 0},
    Parameter{"EmulateDSRTrue", false, 0},
    Parameter{"422485CtsTrue", false, 0},
    Parameter{"CtsSupported", false, 1},
    Parameter{"RtsSupported", false, 1},
    Parameter{"DtrSupported", false, 1},
    Parameter{"DsrSupported", false, 1},
    Parameter{"DcdSupported", false, 1},
    Parameter{"RiSupported", false, 1},
};

constexpr std::array kBusLayout = {
    Parameter{"RxFifoSize", false, 512},
    Parameter{"TxFifoSize", false, 512},
    Parameter{"MaximumBaudRate", false, 921600},
    Parameter{"MinimumBaudRate", false, 60},
    Parameter{"PortType", false, 0},
    Parameter{"SerialPortType", false, 0},
    Parameter{"InterfaceType", true, 0, "TCP"},
    Parameter{"AddressToConnect", false, 0},
    Parameter{"PortNumber", false, 0},
    Parameter{"ProtocolType", false, 2},
    Parameter{"ConnectionIdleTimeout", false, 0},
    Parameter{"ConnectionAttemptTimeout", false, 0},
    Parameter{"AutoDetect", false, 1},
    Parameter{"MACAddress1", false, 0},
    Parameter{"MACAddress2", false, 0},
    Parameter{"ServerConfigPort", false, 9000},
    Parameter{"ServerWebPort", false, 80},
    Parameter{"CtsSupported", false, 1},
    Parameter{"RtsSupported", false, 1},
    Parameter{"DtrSupported", false, 1},
    Parameter{"DsrSupported", false, 1},
    Parameter{"DcdSupported", false, 1},
    Parameter{"RiSupported", false, 1},
    Parameter{"ForceCOMPortConnect", false, 0},
    Parameter{"IgnoreModelChecking", false, 0},
    Parameter{"IgnoreForceProtocol", false, 0},
    Parameter{"SerialPortIndex", false, 1},
    Parameter{"EnableCBFC", false, 1},
    Parameter{"CBFCInitialCredit", false, 4096},
    Parameter{"CBFCInitialNegotiationTimeout", false, 500},
    Parameter{"TelnetNegotiationTimeout", false, 5000},
    Parameter{"RealTxFifoEmulation", false, 1},
    Parameter{"RealTxFifoEmulationSize", false, 16},
    Parameter{"ExtraDelayOnWriteReq", false, 0},
    Parameter{"Model", true, 0, "QX-582"},
};

void Append(std::vector<std::byte>& stream, std::uint32_t number) {
  for (unsigned shift = 0; shift < 32; shift += 8) stream.push_back(static_cast<std::byte>(number >> shift));
}

void Append(std::vector<std::byte>& stream, const std::string& text) {
  Append(stream, static_cast<std::uint32_t>(text.size()));
  std::ranges::transform(text, std::back_inserter(stream), [](char c) { return static_cast<std::byte>(c); });
  stream.push_back(std::byte{0});
}

// What is left of a stream. Take operations return nothing when it is too short or wrong.
class Remaining {
 public:
  explicit Remaining(std::span<const std::byte> bytes) : bytes_(bytes) {}

  std::optional<std::uint32_t> TakeNumber() {
    if (bytes_.size() < 4) return std::nullopt;
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number << 8 | std::to_integer<std::uint32_t>(bytes_[i]);
    bytes_ = bytes_.subspan(4);
    return number;
  }
  std::optional<std::string> TakeText() {
    const auto length = TakeNumber();
    if (!length || bytes_.size() <= *length || bytes_[*length] != std::byte{0}) return std::nullopt;
    std::string text;
    for (const std::byte byte : bytes_.first(*length)) text.push_back(std::to_integer<char>(byte));
    bytes_ = bytes_.subspan(*length + 1);
    if (!std::ranges::all_of(text, [](char c) { return c > 0; })) return std::nullopt;
    return text;
  }
  [[nodiscard]] std::size_t Size() const { return bytes_.size(); }

 private:
  std::span<const std::byte> bytes_;
};

std::string Shown(const Parameter& parameter, const ParameterValues& values) {
  if (parameter.isText) return "\"" + values.Text(parameter.name) + "\"";
  return std::to_string(values.Number(parameter.name));
}

}  // namespace

std::span<const Parameter> SetLayout(std::uint32_t selector) {
  if (selector == kPortSet) return kPortLayout;
  if (selector == kBusSet) return kBusLayout;
  return {};
}

ParameterValues::ParameterValues(std::uint32_t selector) : selector_(selector) {
  if (SetLayout(selector).empty()) throw std::out_of_range("set " + std::to_string(selector));
  for (const Parameter& parameter : SetLayout(selector)) {
    if (parameter.isText) {
      values_.emplace_back(std::string(parameter.initialText));
    } else {
      values_.emplace_back(parameter.initial);
    }
  }
}

std::uint32_t ParameterValues::Number(std::string_view name) const {
  return std::get<std::uint32_t>(values_[IndexOf(name)]);
}

const std::string& ParameterValues::Text(std::string_view name) const {
  return std::get<std::string>(values_[IndexOf(name)]);
}

void ParameterValues::SetNumber(std::string_view name, std::uint32_t number) {
  std::get<std::uint32_t>(values_[IndexOf(name)]) = number;
}

void ParameterValues::SetText(std::string_view name, std::string text) {
  std::get<std::string>(values_[IndexOf(name)]) = std::move(text);
}

std::size_t ParameterValues::IndexOf(std::string_view name) const {
  const auto layout = SetLayout(selector_);
  const auto found = std::ranges::find(layout, name, &Parameter::name);
  if (found == layout.end()) throw std::out_of_range("no parameter " + std::string(name));
  return static_cast<std::size_t>(found - layout.begin());
}

std::vector<std::byte> ParameterValues::Encode() const {
  std::vector<std::byte> stream;
  for (const ParameterValue& value : values_) {
    std::visit([&stream](const auto& content) { Append(stream, content); }, value);
  }
  return stream;
}

std::optional<ParameterValues> ParameterValues::Decode(std::uint32_t selector,
                                                       std::span<const std::byte> stream,
                                                       std::string& fault) {
  ParameterValues values(selector);
  Remaining remaining(stream);
  for (const Parameter& parameter : SetLayout(selector)) {
    bool taken = false;
    if (parameter.isText) {
      const auto text = remaining.TakeText();
      if ((taken = text.has_value())) values.SetText(parameter.name, *text);
    } else {
      const auto number = remaining.TakeNumber();
      if ((taken = number.has_value())) values.SetNumber(parameter.name, *number);
    }
    if (taken) continue;
    fault =
        "the stream of " + std::to_string(stream.size()) + " bytes breaks at " + std::string(parameter.name);
    return std::nullopt;
  }
  if (remaining.Size() > 0) {
    fault = "the stream has " + std::to_string(remaining.Size()) + " bytes behind its last parameter";
    return std::nullopt;
  }
  return values;
}

std::vector<std::string> Differences(const ParameterValues& before, const ParameterValues& after) {
  std::vector<std::string> differences;
  for (const Parameter& parameter : SetLayout(before.Selector())) {
    std::string old = Shown(parameter, before);
    const std::string now = Shown(parameter, after);
    if (old != now) differences.push_back(std::string(parameter.name) + " " + std::move(old) + " -> " + now);
  }
  return differences;
}

}  // namespace workbench
