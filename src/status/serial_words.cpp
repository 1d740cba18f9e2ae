#include "status/serial_words.h"

#include <span>

#include "base/decimal.h"

namespace {

constexpr const wchar_t* kNone = L"None";

constexpr const wchar_t* kDataBitsByIndex[] = {L"5", L"6", L"7", L"8"};
constexpr const wchar_t* kParityByIndex[] = {kNone, L"Odd", L"Even", L"Mark", L"Space"};
constexpr const wchar_t* kStopBitsByIndex[] = {L"1", L"1.5", L"2"};
// Kept on purpose: no Xon/Xoff word
constexpr const wchar_t* kFlowControlByIndex[] = {kNone, L"CTS/RTS", L"DTR/DSR"};
// The duplex mode has the same numbers in both forms.
constexpr const wchar_t* kDuplex[] = {kNone, L"RS422 full-duplex mode", L"RS485 half-duplex autogating mode"};

constexpr const wchar_t* kParityByCode[] = {kNone, kNone, L"Odd", L"Even", L"Mark", L"Space"};
// Kept on purpose: stop bit codes
constexpr const wchar_t* kStopBitsByCode[] = {kNone, L"1", L"2", L"1.5"};
constexpr const wchar_t* kFlowControlByCode[] = {kNone, kNone, L"CTS/RTS", L"DTR/DSR", L"Xon/Xoff"};

constexpr std::uint32_t kParityIndexByCode[] = {0, 0, 1, 2, 3, 4};
constexpr std::uint32_t kStopBitsIndexByCode[] = {0, 0, 2, 1};
// Kept on purpose: Xon/Xoff is 4
constexpr std::uint32_t kFlowControlIndexByCode[] = {0, 0, 1, 2, 4};
constexpr std::uint32_t kDuplexIndexByCode[] = {0, 1, 2};

template <class Value>
Value Pick(std::span<const Value> table, std::uint32_t at, Value otherwise) noexcept {
  return at < table.size() ? table[at] : otherwise;
}

CWideString Word(std::span<const wchar_t* const> table, std::uint32_t at, const wchar_t* otherwise = kNone) {
  return CWideString(Pick<const wchar_t*>(table, at, otherwise));
}

// Negative numbers become large ones, which no table has.
std::uint32_t CodeOf(std::wstring_view text) noexcept {
  return static_cast<std::uint32_t>(ParseDecimal(text));
}

}  // namespace

CWideString DataBitsIndexToText(std::uint32_t index) {
  return Word(kDataBitsByIndex, index, L"");
}
CWideString ParityIndexToText(std::uint32_t index) {
  return Word(kParityByIndex, index);
}
CWideString StopBitsIndexToText(std::uint32_t index) {
  return Word(kStopBitsByIndex, index);
}
CWideString FlowControlIndexToText(std::uint32_t index) {
  return Word(kFlowControlByIndex, index);
}
CWideString DuplexIndexToText(std::uint32_t index) {
  return Word(kDuplex, index);
}

CWideString ParityCodeToText(std::wstring_view code) {
  return Word(kParityByCode, CodeOf(code));
}
CWideString StopBitsCodeToText(std::wstring_view code) {
  return Word(kStopBitsByCode, CodeOf(code));
}
CWideString FlowControlCodeToText(std::wstring_view code) {
  return Word(kFlowControlByCode, CodeOf(code));
}
CWideString DuplexCodeToText(std::wstring_view code) {
  return Word(kDuplex, CodeOf(code));
}

std::uint32_t ParityCodeToIndex(std::uint32_t code) noexcept {
  return Pick<std::uint32_t>(kParityIndexByCode, code, 0);
}
std::uint32_t StopBitsCodeToIndex(std::uint32_t code) noexcept {
  return Pick<std::uint32_t>(kStopBitsIndexByCode, code, 0);
}
std::uint32_t FlowControlCodeToIndex(std::uint32_t code) noexcept {
  return Pick<std::uint32_t>(kFlowControlIndexByCode, code, 0);
}
std::uint32_t DuplexCodeToIndex(std::uint32_t code) noexcept {
  return Pick<std::uint32_t>(kDuplexIndexByCode, code, 0);
}
