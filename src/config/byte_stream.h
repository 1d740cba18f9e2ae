// Bounded reading and writing of little-endian bytes. Portable.
//
// Both classes work on the caller's buffer and on the caller's count of bytes that are left, and never go
// past it: an operation that does not fit fails and moves nothing. Neither allocates or throws. Buffer and
// count are borrowed and must outlive the object. A null buffer has room for nothing, whatever the count
// says.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

// Writes into `buffer`, which has `remaining` free bytes; the count is decreased as bytes are written.
class CByteWriter {
 public:
  CByteWriter(std::uint8_t* buffer, std::uint32_t& remaining) noexcept : at_(buffer), remaining_(remaining) {}

  // Whether `count` more bytes fit; for a caller that writes several parts or none.
  [[nodiscard]] bool HasRoom(std::uint32_t count) const noexcept {
    return count <= remaining_ && (at_ != nullptr || count == 0);
  }
  // Write one value of 8, 16 or 32 bits; false when it does not fit.
  [[nodiscard]] bool Byte(std::uint8_t value) noexcept { return Bytes({&value, 1}); }
  [[nodiscard]] bool Unit(char16_t value) noexcept {
    const std::uint8_t bytes[] = {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)};
    return Bytes(bytes);
  }
  [[nodiscard]] bool Dword(std::uint32_t value) noexcept {
    const std::uint8_t bytes[] = {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
                                  static_cast<std::uint8_t>(value >> 16),
                                  static_cast<std::uint8_t>(value >> 24)};
    return Bytes(bytes);
  }

 private:
  [[nodiscard]] bool Bytes(std::span<const std::uint8_t> bytes) noexcept {
    if (!HasRoom(static_cast<std::uint32_t>(bytes.size()))) return false;
    at_ = std::copy(bytes.begin(), bytes.end(), at_);
    remaining_ -= static_cast<std::uint32_t>(bytes.size());
    return true;
  }

  std::uint8_t* at_;
  std::uint32_t& remaining_;
};

// Reads from `buffer`, which has `remaining` unread bytes; the count is decreased as bytes are consumed.
class CByteReader {
 public:
  CByteReader(const std::uint8_t* buffer, std::uint32_t& remaining) noexcept
      : at_(buffer), remaining_(remaining) {}

  // The unread bytes, as a view into the buffer.
  [[nodiscard]] std::span<const std::uint8_t> Rest() const noexcept {
    return at_ != nullptr ? std::span(at_, remaining_) : std::span<const std::uint8_t>();
  }
  // Consumes `count` bytes unread; false when there are fewer.
  [[nodiscard]] bool Skip(std::uint32_t count) noexcept {
    if (count > Rest().size()) return false;
    if (count == 0) return true;
    at_ += count;
    remaining_ -= count;
    return true;
  }
  // Read one value of 8 or 32 bits; nothing when too few bytes are left.
  [[nodiscard]] std::optional<std::uint8_t> Byte() noexcept {
    const auto rest = Rest();
    if (!Skip(1)) return std::nullopt;
    return rest[0];
  }
  [[nodiscard]] std::optional<std::uint32_t> Dword() noexcept {
    const auto rest = Rest();
    if (!Skip(4)) return std::nullopt;
    return rest[0] | static_cast<std::uint32_t>(rest[1]) << 8 | static_cast<std::uint32_t>(rest[2]) << 16 |
           static_cast<std::uint32_t>(rest[3]) << 24;
  }

 private:
  const std::uint8_t* at_;
  std::uint32_t& remaining_;
};
