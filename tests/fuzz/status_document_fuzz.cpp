// A hostile status document against hostile settings: the first bytes are the port's own settings, the second
// is how the rest is cut into pieces as the network delivers it.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "status/document_buffer.h"
#include "status/port_status.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsOneOf(const CWideString& text, std::initializer_list<std::wstring_view> words) {
  return std::find(words.begin(), words.end(), text.View()) != words.end();
}

std::string_view Deliver(CDocumentBuffer& buffer, const std::uint8_t* data, std::size_t size,
                         std::size_t pieceBytes) {
  while (size > 0) {
    const std::size_t count = std::min({size, pieceBytes, CDocumentBuffer::kPieceBytes});
    std::memcpy(buffer.Room().data(), data, count);
    buffer.Accept(count);
    data += count;
    size -= count;
  }
  return buffer.Document();
}

void CheckTexts(const PortStatus& status) {
  Require(IsOneOf(status.state, {L"Idle", L"Connected", L"Tunneling", L"Offline"}));
  Require(IsOneOf(status.mode, {L"RS232", L"RS422/485", L"RS232/422/485", L"I/O Control", L"Unknown"}));
  Require(IsOneOf(status.parity, {L"None", L"Odd", L"Even", L"Mark", L"Space"}));
  Require(IsOneOf(status.stopBits, {L"1", L"1.5", L"2", L"None"}));
  Require(IsOneOf(status.flowControl, {L"None", L"CTS/RTS", L"DTR/DSR", L"Xon/Xoff"}));
}

void CheckSettings(const CVcpParameters& before, const CVcpParameters& after) {
  Require(after.Databits == before.Databits || after.Databits <= 3);
  Require(after.Stopbits == before.Stopbits || after.Stopbits <= 2);
  Require(after.FlowControl == before.FlowControl || after.FlowControl <= 2 || after.FlowControl == 4);
  Require(after.DuplexMode == before.DuplexMode || after.DuplexMode <= 2);
  Require(after.CtsSupported <= 1 && after.DsrSupported <= 1);
  Require(after.PortType == before.PortType || after.PortType == 1);
  // No document changes these.
  Require(after.Parity == before.Parity && after.EmulateCTSTrue == before.EmulateCTSTrue &&
          after.EmulateDSRTrue == before.EmulateDSRTrue && after.MaxBaudRate == before.MaxBaudRate);
}

void CheckBoxes(const PortStatus& status, const CVcpParameters& port, std::uint32_t index) {
  const bool isRs422485 = IsRs422485Port(port.PortType, index);
  Require(status.boxes.cts.checked.has_value() && status.boxes.dsr.checked.has_value());
  Require(!isRs422485 || (status.showDuplex && !status.showOverrideMarks && *status.boxes.dsr.checked));
  Require(port.CtsSupported != 0 || status.boxes.cts.boxEnabled == false);
  Require(port.DsrSupported != 0 || status.boxes.dsr.labelEnabled == false);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kSettings = 12;
  if (size < kSettings + 2) return 0;
  CKdUVcpUserModeInterface port;
  CKdNBusUserModeInterface bus;
  std::uint32_t* const members[] = {&port.PortType,     &port.DuplexMode,     &port.Baudrate,
                                    &port.Databits,     &port.Parity,         &port.Stopbits,
                                    &port.FlowControl,  &port.EmulateCTSTrue, &port.CtsSupported,
                                    &port.DsrSupported, &bus.PortType,        &bus.SerialPortIndex};
  static_assert(std::size(members) == kSettings);
  // Small numbers as they are, large ones spread over all 32 bits.
  for (std::size_t i = 0; i < kSettings; ++i) *members[i] = data[i] < 0x80 ? data[i] : data[i] * 0x01010101U;
  const std::size_t pieceBytes = 1 + (data[kSettings] + data[kSettings + 1] * 256U) % 8192U;

  CDocumentBuffer buffer;
  const std::string_view bytes = Deliver(buffer, data + kSettings + 2, size - kSettings - 2, pieceBytes);
  Require(bytes.size() <= CDocumentBuffer::kPieceBytes);
  CWideString document(std::wstring(bytes.begin(), bytes.end()));
  document.MakeLower();

  const CVcpParameters before = port;
  const PortStatus status = AdoptStatusDocument(document, port, bus);
  CheckTexts(status);
  CheckSettings(before, port);
  CheckBoxes(status, port, bus.SerialPortIndex);
  return 0;
}
