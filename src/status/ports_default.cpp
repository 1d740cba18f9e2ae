#include "status/ports_default.h"

#include <iterator>

namespace {

constexpr int kDataBits[] = {5, 6, 7, 8};
constexpr wchar_t kParity[] = {L'n', L'o', L'e', L'm', L's'};
constexpr const wchar_t* kStopBits[] = {L"1", L"1.5", L"2"};

// The field's letter, 0 for a string without it, nothing for a value that the string cannot say.
// Kept on purpose: DTR/DSR as p
std::optional<wchar_t> FlowLetter(std::uint32_t flowControl) noexcept {
  switch (flowControl) {
    case 0:
      return L'\0';
    case 1:
    case 2:
      return L'p';
    case 4:
      return L'x';
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<CWideString> PortsDefaultSettings(std::uint32_t baudRate, std::uint32_t dataBitsIndex,
                                                std::uint32_t parityIndex, std::uint32_t stopBitsIndex,
                                                std::uint32_t flowControl) {
  const auto flow = FlowLetter(flowControl);
  if (dataBitsIndex >= std::size(kDataBits) || parityIndex >= std::size(kParity) ||
      stopBitsIndex >= std::size(kStopBits) || !flow) {
    return std::nullopt;
  }
  // Kept on purpose: two orders
  const auto baud = static_cast<std::int32_t>(baudRate);
  const int dataBits = kDataBits[dataBitsIndex];
  const wchar_t parity = kParity[parityIndex];
  const wchar_t* stopBits = kStopBits[stopBitsIndex];
  if (*flow == L'\0') return CWideString::Format(L"%d,%d,%c,%s", baud, dataBits, parity, stopBits);
  return CWideString::Format(L"%d,%d,%c,%s,%c", baud, dataBits, parity, stopBits, *flow);
}
