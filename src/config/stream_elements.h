// The elements of an information set's stream, one at a time. Portable.
//
// `flags` are the effective options of the stream (CSsSerialisationBase). Memory that runs out counts as a
// failed conversion; nothing here throws.
#pragma once

#include <cstdint>
#include <optional>

#include "config/byte_stream.h"
#include "config/information_set.h"

// What the tag byte before an element says, in streams that have tag bytes.
enum class ElementTag : std::uint8_t { Header = 0, Dword = 2, NarrowString = 3, WideString = 4 };

// Bytes that an item takes in the stream with its present value, its tag byte included; nothing for an item
// of an unknown type.
[[nodiscard]] std::optional<std::uint32_t> ElementSize(const CSsInformationItem& item,
                                                       std::uint32_t flags) noexcept;
// Bytes that the header takes, its tag byte included.
[[nodiscard]] std::uint32_t HeaderSize(std::uint32_t flags) noexcept;

// Writers fail without a byte written when the element does not fit or its text cannot be converted.
[[nodiscard]] bool WriteHeader(CByteWriter& out, std::uint32_t tag, std::uint32_t flags) noexcept;
[[nodiscard]] bool WriteElement(CByteWriter& out, const CSsInformationItem& item,
                                std::uint32_t flags) noexcept;

// Readers store into the item's bound member. They fail on a wrong tag, a wrong length and a short stream.
[[nodiscard]] bool ReadHeader(CByteReader& in, std::uint32_t tag, std::uint32_t flags) noexcept;
[[nodiscard]] bool ReadElement(CByteReader& in, const CSsInformationItem& item, std::uint32_t flags) noexcept;
