#include "workbench/demo/port_expectation.h"

#include <array>
#include <span>

#include "base/resource_ids.h"

namespace workbench {
namespace {

// Words for numbers that count from `first`; `other` for numbers beyond.
struct Words {
  unsigned first;
  std::span<const wchar_t* const> words;
  const wchar_t* other;

  [[nodiscard]] std::wstring Of(unsigned number) const {
    return number < first || number - first >= words.size() ? other : words[number - first];
  }
};

constexpr const wchar_t* kParities[] = {L"None", L"Odd", L"Even", L"Mark", L"Space"};
constexpr const wchar_t* kDuplexModes[] = {L"None", L"RS422 full-duplex mode",
                                           L"RS485 half-duplex autogating mode"};
constexpr const wchar_t* kStates[] = {L"Idle", L"Connected", L"Tunneling"};
constexpr const wchar_t* kPortModes[] = {L"RS232", L"RS422/485", L"RS232/422/485", L"I/O Control"};
constexpr const wchar_t* kDeviceStopBits[] = {L"1", L"2", L"1.5"};
constexpr const wchar_t* kDeviceFlowControls[] = {L"None", L"CTS/RTS", L"DTR/DSR", L"Xon/Xoff"};
constexpr const wchar_t* kDriverDataBits[] = {L"5", L"6", L"7", L"8"};
constexpr const wchar_t* kDriverStopBits[] = {L"1", L"1.5", L"2"};
// The drivers' flow control is a set of bits, and only the single first two have a word.
constexpr const wchar_t* kDriverFlowControls[] = {L"None", L"CTS/RTS", L"DTR/DSR"};

// One value of the page: where the device says it, and where the drivers keep it.
struct ValueRow {
  int control;
  std::optional<unsigned> PortState::*deviceValue;
  Words deviceWords;  // no words: the number itself
  const char* parameter;
  Words driverWords;
};
constexpr std::array kValues = {
    ValueRow{IDC_PORT_BAUD_RATE, &PortState::baudRate, {}, "Baudrate", {}},
    ValueRow{IDC_PORT_DATA_BITS, &PortState::dataBits, {}, "Databits", {0, kDriverDataBits, L""}},
    ValueRow{IDC_PORT_PARITY, &PortState::parity, {1, kParities, L"None"}, "Parity", {0, kParities, L"None"}},
    ValueRow{IDC_PORT_STOP_BITS,
             &PortState::stopBits,
             {1, kDeviceStopBits, L"None"},
             "Stopbits",
             {0, kDriverStopBits, L"None"}},
    ValueRow{IDC_PORT_FLOW_CONTROL,
             &PortState::flowControl,
             {1, kDeviceFlowControls, L"None"},
             "FlowControl",
             {0, kDriverFlowControls, L"None"}},
    ValueRow{IDC_PORT_DUPLEX,
             &PortState::duplex,
             {0, kDuplexModes, L"None"},
             "DuplexMode",
             {0, kDuplexModes, L"None"}},
};

std::wstring Shown(const Words& words, unsigned number) {
  return words.words.empty() ? std::to_wstring(number) : words.Of(number);
}

// A device number in the drivers' numbering, when the drivers take it over.
struct AdoptRow {
  std::optional<unsigned> PortState::*deviceValue;
  const char* parameter;
  std::optional<unsigned> (*convert)(unsigned);
};
constexpr std::array kAdopted = {
    AdoptRow{&PortState::baudRate, "Baudrate", [](unsigned n) { return std::optional(n); }},
    // Devices report 5 to 8 here, so that only odd firmware ever changes the setting by this tag ...
    AdoptRow{&PortState::dataBits, "Databits",
             [](unsigned n) { return n <= 3 ? std::optional(n) : std::nullopt; }},
    // ... and the parity goes where the data bits are kept.
    AdoptRow{&PortState::parity, "Databits",
             [](unsigned n) {
               const unsigned index = n >= 2 && n <= 5 ? n - 1 : 0;
               return index <= 3 ? std::optional(index) : std::nullopt;
             }},
    AdoptRow{&PortState::stopBits, "Stopbits",
             [](unsigned n) {
               return std::optional(n == 2 ? 2u : n == 3 ? 1u : 0u);
             }},
    AdoptRow{&PortState::flowControl, "FlowControl",
             [](unsigned n) {
               return std::optional(n == 4 ? 4u : n == 2 || n == 3 ? n - 1 : 0u);
             }},
    AdoptRow{&PortState::duplex, "DuplexMode", [](unsigned n) { return std::optional(n <= 2 ? n : 0u); }},
    AdoptRow{&PortState::ctsLine, "CtsSupported", [](unsigned n) { return std::optional(n ? 1u : 0u); }},
    AdoptRow{&PortState::dsrLine, "DsrSupported", [](unsigned n) { return std::optional(n ? 1u : 0u); }},
};

std::uint32_t BitOf(const ParameterValues& bus) {
  return 1u << ((bus.Number("SerialPortIndex") - 1) & 31);
}

void AddValues(PageExpectation& page, const PortState& device, const ParameterValues& port) {
  for (const ValueRow& row : kValues) {
    const auto said = device.*row.deviceValue;
    page.texts.push_back({row.control, said ? Shown(row.deviceWords, *said)
                                            : Shown(row.driverWords, port.Number(row.parameter))});
  }
}

// The words of the connection: what the device says, else that it says nothing.
std::wstring AddConnection(PageExpectation& page, const PortState& device, const ParameterValues& bus) {
  const unsigned shift = (bus.Number("SerialPortIndex") - 1) & 31;
  const unsigned mode = device.portMode.value_or(bus.Number("PortType") >> shift);
  const std::wstring modeText = Words{0, kPortModes, L"Unknown"}.Of(mode);
  page.texts.push_back(
      {IDC_PORT_STATE, device.state ? Words{0, kStates, L"Offline"}.Of(*device.state) : L"Offline"});
  page.texts.push_back({IDC_PORT_MODE, modeText});
  return modeText;
}

void AdoptSettings(PageExpectation& page, const PortState& device, bool isMultiMode) {
  for (const AdoptRow& row : kAdopted) {
    const auto said = device.*row.deviceValue;
    const auto adopted = said ? row.convert(*said) : std::nullopt;
    if (adopted) page.port.SetNumber(row.parameter, *adopted);
  }
  if (!isMultiMode) return;
  const std::uint32_t bit = BitOf(page.bus);
  page.bus.SetNumber("PortType", page.bus.Number("PortType") | bit);
  // The port driver learns of it for the first port of a device server only.
  if (bit != 1 || page.port.Number("PortType") > 1 || (page.port.Number("PortType") & bit)) return;
  page.port.SetNumber("PortType", page.port.Number("PortType") | bit);
  if (page.port.Number("DuplexMode") == 0) page.port.SetNumber("DuplexMode", 1);
}

void SetCheckBoxes(PageExpectation& page) {
  const ParameterValues& port = page.port;
  page.cts = {port.Number("EmulateCTSTrue") != 0, true};
  page.dsr = {port.Number("EmulateDSRTrue") != 0, true};
  if (port.Number("PortType") & BitOf(page.bus)) {
    page.dsr = {true, false};
    if (port.Number("DuplexMode") == 2) page.cts = {true, false};
  }
  if (!port.Number("CtsSupported")) page.cts = {true, false};
  if (!port.Number("DsrSupported")) page.dsr = {true, false};
}

}  // namespace

PageExpectation ExpectPage(const std::optional<PortState>& device, const ParameterValues& port,
                           const ParameterValues& bus) {
  static constexpr auto kNothing = std::nullopt;
  const PortState silent{kNothing, kNothing, kNothing, kNothing, kNothing,
                         kNothing, kNothing, kNothing, kNothing, kNothing};
  const PortState& said = device ? *device : silent;
  PageExpectation page{.texts = {}, .port = port, .bus = bus};
  const std::wstring mode = AddConnection(page, said, bus);
  AddValues(page, said, port);
  AdoptSettings(page, said, mode == L"RS422/485");
  const std::uint32_t either = page.port.Number("PortType") | page.bus.Number("PortType");
  page.duplexShown = (either & BitOf(page.bus)) != 0 || mode == L"RS422/485";
  SetCheckBoxes(page);
  return page;
}

}  // namespace workbench
