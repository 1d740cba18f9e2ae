#include <algorithm>
#include <new>
#include <string>
#include <string_view>

#include "config/stream_elements.h"

namespace {

using Options = CSsSerialisationBase;

// Consumes the tag byte of a stream that has them; false when it is missing or another one.
bool ReadTag(CByteReader& in, ElementTag expected, std::uint32_t flags) noexcept {
  return (flags & Options::kTypeTags) == 0 || in.Byte() == static_cast<std::uint8_t>(expected);
}

// The whole UTF-16 code units in the bytes, which need not be aligned.
std::u16string UnitsIn(std::span<const std::uint8_t> bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    units[i] = static_cast<char16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
  }
  return units;
}

// Code units before the zero unit; nothing when the bytes hold none.
std::optional<std::size_t> TerminatedUnits(std::span<const std::uint8_t> bytes) noexcept {
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    if (bytes[i] == 0 && bytes[i + 1] == 0) return i / 2;
  }
  return std::nullopt;
}

std::optional<std::size_t> TerminatedBytes(std::span<const std::uint8_t> bytes) noexcept {
  const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
  if (end == bytes.end()) return std::nullopt;
  return static_cast<std::size_t>(end - bytes.begin());
}

std::string_view NarrowIn(std::span<const std::uint8_t> bytes) noexcept {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Wide text up to its terminator. The prefix is compared with the text's bytes, although the writer puts
// code units there, and lengths count in 16 bits: both are the drivers' own reading of the format.
bool ReadTerminatedWide(CByteReader& in, CWideString& text, std::optional<std::uint32_t> prefix) {
  const auto units = TerminatedUnits(in.Rest());
  if (!units || !text.AssignUtf16(UnitsIn(in.Rest().first(2 * *units)))) return false;
  const std::uint32_t bytes = static_cast<std::uint16_t>(2 * *units);
  if (prefix && bytes != *prefix) return false;
  return in.Skip(bytes + 2);
}

// Wide text of `prefix` code units. Only `prefix` bytes are consumed, half of what was copied: the format
// is defined like this, and a driver that speaks it relies on it.
bool ReadCountedWide(CByteReader& in, CWideString& text, std::uint32_t prefix) {
  if (prefix > in.Rest().size() / 2) return false;
  const auto bytes = in.Rest().first(std::size_t{2} * prefix);
  const std::size_t units = TerminatedUnits(bytes).value_or(prefix);
  return text.AssignUtf16(UnitsIn(bytes.first(2 * units))) && in.Skip(prefix);
}

bool ReadTerminatedNarrow(CByteReader& in, CWideString& text, std::optional<std::uint32_t> prefix) {
  const auto length = TerminatedBytes(in.Rest());
  if (!length || !text.AssignNarrow(NarrowIn(in.Rest().first(*length)))) return false;
  if (prefix && static_cast<std::uint16_t>(*length) != *prefix) return false;
  // The terminator lies within the unread bytes, whose count has 32 bits.
  return in.Skip(static_cast<std::uint32_t>(*length + 1));
}

bool ReadCountedNarrow(CByteReader& in, CWideString& text, std::uint32_t prefix) {
  const auto bytes = in.Rest().first(prefix);
  const std::size_t length = TerminatedBytes(bytes).value_or(prefix);
  return text.AssignNarrow(NarrowIn(bytes.first(length))) && in.Skip(prefix);
}

bool ReadString(CByteReader& in, CWideString& text, std::uint32_t flags) {
  const bool wide = (flags & Options::kWideStrings) != 0;
  if (!ReadTag(in, wide ? ElementTag::WideString : ElementTag::NarrowString, flags)) return false;
  std::optional<std::uint32_t> prefix;
  if ((flags & Options::kLengthPrefix) != 0) {
    prefix = in.Dword();
    if (!prefix || *prefix > in.Rest().size()) return false;
  }
  if ((flags & Options::kTerminator) != 0) {
    return wide ? ReadTerminatedWide(in, text, prefix) : ReadTerminatedNarrow(in, text, prefix);
  }
  if (!prefix) return false;
  return wide ? ReadCountedWide(in, text, *prefix) : ReadCountedNarrow(in, text, *prefix);
}

}  // namespace

bool ReadHeader(CByteReader& in, std::uint32_t tag, std::uint32_t flags) noexcept {
  return ReadTag(in, ElementTag::Header, flags) && in.Dword() == tag;
}

bool ReadElement(CByteReader& in, const CSsInformationItem& item, std::uint32_t flags) noexcept {
  if (item.type == CSsInformationItem::kDword) {
    if (!ReadTag(in, ElementTag::Dword, flags)) return false;
    const auto value = in.Dword();
    if (value) *static_cast<std::uint32_t*>(item.value) = *value;
    return value.has_value();
  }
  if (item.type != CSsInformationItem::kString) return false;
  auto& text = *static_cast<CWideString*>(item.value);
  try {
    return ReadString(in, text, flags);
  } catch (const std::bad_alloc&) {
    text.MarkFailed();
    return false;
  }
}
