#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "base/utf16.h"
#include "config/stream_elements.h"

namespace {

using Options = CSsSerialisationBase;

std::uint32_t& DwordOf(const CSsInformationItem& item) {
  return *static_cast<std::uint32_t*>(item.value);
}
CWideString& TextOf(const CSsInformationItem& item) {
  return *static_cast<CWideString*>(item.value);
}

// The length of a text as the wire knows it: UTF-16 code units, of which only the low 16 bits count.
// Kept on purpose: long text
std::uint16_t WireLength(std::wstring_view text) noexcept {
  std::size_t units = text.size();
  if constexpr (sizeof(wchar_t) > sizeof(char16_t)) {
    for (const wchar_t c : text) units += (static_cast<std::uint32_t>(c) >> 16) != 0 ? 1U : 0U;
  }
  return static_cast<std::uint16_t>(units);
}

// The bytes of a text in the stream. Those of wide text are counted in 16 bits as well.
std::uint32_t TextBytes(std::uint16_t length, std::uint32_t flags) noexcept {
  return (flags & Options::kWideStrings) != 0 ? static_cast<std::uint16_t>(2U * length) : length;
}

std::uint32_t TagSize(std::uint32_t flags) noexcept {
  return (flags & Options::kTypeTags) != 0 ? 1 : 0;
}

std::uint32_t StringSize(std::uint16_t length, std::uint32_t flags) noexcept {
  const std::uint32_t terminator = (flags & Options::kWideStrings) != 0 ? 2 : 1;
  return TextBytes(length, flags) + ((flags & Options::kTerminator) != 0 ? terminator : 0) +
         ((flags & Options::kLengthPrefix) != 0 ? 4 : 0) + TagSize(flags);
}

bool WriteTag(CByteWriter& out, ElementTag tag, std::uint32_t flags) noexcept {
  return (flags & Options::kTypeTags) == 0 || out.Byte(static_cast<std::uint8_t>(tag));
}

// The units that are written, widened to UTF-16 so that one loop serves both forms; nothing when narrow text
// cannot be converted. Only what is written is converted, and nothing that was not leaves the process.
std::optional<std::u16string> WrittenUnits(const CWideString& text, std::uint16_t length,
                                           std::uint32_t flags) {
  if ((flags & Options::kWideStrings) != 0) {
    return ToUtf16(text.View()).substr(0, TextBytes(length, flags) / 2);
  }
  const auto narrow = text.ToNarrow(length);
  if (!narrow) return std::nullopt;
  return std::u16string(narrow->begin(), narrow->end());
}

bool WriteUnits(CByteWriter& out, std::u16string_view units, std::uint32_t flags) noexcept {
  const bool wide = (flags & Options::kWideStrings) != 0;
  for (const char16_t unit : units) {
    if (!(wide ? out.Unit(unit) : out.Byte(static_cast<std::uint8_t>(unit)))) return false;
  }
  return true;
}

bool WriteStringParts(CByteWriter& out, std::uint16_t length, std::u16string_view units,
                      std::uint32_t flags) noexcept {
  const bool wide = (flags & Options::kWideStrings) != 0;
  if (!WriteTag(out, wide ? ElementTag::WideString : ElementTag::NarrowString, flags)) return false;
  // The prefix counts code units, also of wide text. The reader asks for bytes there; the two agree for
  // narrow text, which is all that the drivers exchange.
  if ((flags & Options::kLengthPrefix) != 0 && !out.Dword(length)) return false;
  if (!WriteUnits(out, units, flags)) return false;
  return (flags & Options::kTerminator) == 0 || WriteUnits(out, std::u16string_view(u"\0", 1), flags);
}

bool WriteString(CByteWriter& out, CWideString& text, std::uint32_t flags) noexcept {
  const std::uint16_t length = WireLength(text.View());
  if (!out.HasRoom(StringSize(length, flags))) return false;
  try {
    const auto units = WrittenUnits(text, length, flags);
    if (units) return WriteStringParts(out, length, *units, flags);
  } catch (const std::bad_alloc&) {
    // Reported below, as a failed conversion is.
  }
  text.MarkFailed();
  return false;
}

}  // namespace

std::uint32_t HeaderSize(std::uint32_t flags) noexcept {
  return 4 + TagSize(flags);
}

std::optional<std::uint32_t> ElementSize(const CSsInformationItem& item, std::uint32_t flags) noexcept {
  if (item.type == CSsInformationItem::kDword) return 4 + TagSize(flags);
  if (item.type != CSsInformationItem::kString) return std::nullopt;
  return StringSize(WireLength(TextOf(item).View()), flags);
}

bool WriteHeader(CByteWriter& out, std::uint32_t tag, std::uint32_t flags) noexcept {
  return out.HasRoom(HeaderSize(flags)) && WriteTag(out, ElementTag::Header, flags) && out.Dword(tag);
}

bool WriteElement(CByteWriter& out, const CSsInformationItem& item, std::uint32_t flags) noexcept {
  if (item.type == CSsInformationItem::kString) return WriteString(out, TextOf(item), flags);
  if (item.type != CSsInformationItem::kDword) return false;
  return out.HasRoom(4 + TagSize(flags)) && WriteTag(out, ElementTag::Dword, flags) &&
         out.Dword(DwordOf(item));
}
