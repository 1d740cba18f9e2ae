// A hostile status document against hostile settings. Input: the port's own settings (twelve bytes), how the
// answer is cut into pieces as the network delivers it, and whether something long comes before the document
// (two bytes), then the document.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz_checks.h"
#include "status/document_buffer.h"
#include "status/port_status.h"

namespace {

std::string_view Deliver(CDocumentBuffer& buffer, std::string_view answer, std::size_t pieceBytes) {
  while (!answer.empty()) {
    const std::size_t count = std::min({answer.size(), pieceBytes, CDocumentBuffer::kPieceBytes});
    std::memcpy(buffer.Room().data(), answer.data(), count);
    buffer.Accept(count);
    answer.remove_prefix(count);
  }
  return buffer.Document();
}

void CheckSettings(const CVcpParameters& before, const CVcpParameters& after) {
  Require(after.Databits == before.Databits || after.Databits <= 3, "data bits in range");
  Require(after.Stopbits == before.Stopbits || after.Stopbits <= 2, "stop bits in range");
  Require(after.FlowControl == before.FlowControl || after.FlowControl <= 2 || after.FlowControl == 4,
          "flow control in range");
  Require(after.DuplexMode == before.DuplexMode || after.DuplexMode <= 2, "duplex mode in range");
  Require(after.CtsSupported <= 1 && after.DsrSupported <= 1, "a line is there or not");
  Require(after.PortType == before.PortType || after.PortType == 1, "the port's own type is 0 or 1");
  Require(after.Parity == before.Parity && after.EmulateCTSTrue == before.EmulateCTSTrue &&
              after.EmulateDSRTrue == before.EmulateDSRTrue && after.MaxBaudRate == before.MaxBaudRate,
          "no document changes these");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kSettings = 12;
  if (size < kSettings + 2) return 0;
  // Made once, since registering the parameters takes longer than reading a document; no document changes
  // more of the bus than its type.
  static CKdUVcpUserModeInterface port;
  static CKdNBusUserModeInterface bus;
  static_cast<CVcpParameters&>(port) = CVcpParameters();
  std::uint32_t* const members[] = {&port.PortType,     &port.DuplexMode,     &port.Baudrate,
                                    &port.Databits,     &port.Parity,         &port.Stopbits,
                                    &port.FlowControl,  &port.EmulateCTSTrue, &port.CtsSupported,
                                    &port.DsrSupported, &bus.PortType,        &bus.SerialPortIndex};
  static_assert(std::size(members) == kSettings);
  // Small numbers as they are, large ones spread over all 32 bits.
  for (std::size_t i = 0; i < kSettings; ++i) *members[i] = data[i] < 0x80 ? data[i] : data[i] * 0x01010101U;
  const unsigned cut = data[kSettings] + data[kSettings + 1] * 256U;
  const std::size_t pieceBytes = 1 + cut % 8192U;

  CDocumentBuffer buffer;
  // More than a piece, so that short inputs reach the end of the buffer and a longer piece than the last.
  static const std::string filler(CDocumentBuffer::kPieceBytes, '<');
  if (cut >= 0x8000U) Deliver(buffer, filler, pieceBytes);
  const std::string_view answer(reinterpret_cast<const char*>(data) + kSettings + 2, size - kSettings - 2);
  const std::string_view bytes = Deliver(buffer, answer, pieceBytes);
  const std::size_t longest =
      answer.empty() ? CDocumentBuffer::kPieceBytes : std::min(pieceBytes, answer.size());
  Require(bytes.size() <= longest, "of an earlier piece nothing is left");
  CWideString document(std::wstring(bytes.begin(), bytes.end()));
  document.MakeLower();

  const CVcpParameters before = port;
  const PortStatus status = ApplyStatusDocument(document, port, bus);
  CheckSettings(before, port);
  // These two are shown as the document has them; a number of the port's own has ten digits and a sign.
  const std::size_t longestText = std::max<std::size_t>(document.Length(), 11);
  Require(status.baudRate.Length() <= longestText && status.dataBits.Length() <= longestText,
          "no text grows");
  return 0;
}
