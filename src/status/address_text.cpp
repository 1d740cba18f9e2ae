#include "status/address_text.h"

namespace {

constexpr std::uint32_t ByteOf(std::uint32_t value, unsigned position) noexcept {
  return value >> (8 * position) & 0xFF;
}
constexpr std::int32_t DecimalByte(std::uint32_t value, unsigned position) noexcept {
  return static_cast<std::int32_t>(ByteOf(value, position));
}

}  // namespace

CWideString MacText(std::uint32_t firstHalf, std::uint32_t secondHalf) {
  return CWideString::Format(L"%02X:%02X:%02X:%02X:%02X:%02X", ByteOf(firstHalf, 2), ByteOf(firstHalf, 1),
                             ByteOf(firstHalf, 0), ByteOf(secondHalf, 2), ByteOf(secondHalf, 1),
                             ByteOf(secondHalf, 0));
}

CWideString Ipv4Text(std::uint32_t address) {
  return CWideString::Format(L"%d.%d.%d.%d", DecimalByte(address, 3), DecimalByte(address, 2),
                             DecimalByte(address, 1), DecimalByte(address, 0));
}
