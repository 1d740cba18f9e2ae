// What a port has besides its COM name and can be given: its line settings and its network address. The
// numbers are those of the drivers' parameter sets; the words are those of kdport's options and files.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace KdPort {

enum class Field : std::size_t {
  Baud,
  DataBits,
  Parity,
  StopBits,
  FlowControl,
  Address,
  DataPort,
  ConfigPort,
  WebPort
};
inline constexpr std::size_t kFieldCount = 9;
inline constexpr std::array<Field, kFieldCount> kFields = {
    Field::Baud,    Field::DataBits, Field::Parity,     Field::StopBits, Field::FlowControl,
    Field::Address, Field::DataPort, Field::ConfigPort, Field::WebPort};

// Which of a port's two drivers holds a field.
enum class FieldGroup { Settings, Network };

// A value for some of the fields: what a driver reported, or what somebody wants.
class CFieldValues {
 public:
  [[nodiscard]] std::optional<std::uint32_t>& operator[](Field field) {
    return values_[static_cast<std::size_t>(field)];
  }
  [[nodiscard]] const std::optional<std::uint32_t>& operator[](Field field) const {
    return values_[static_cast<std::size_t>(field)];
  }
  [[nodiscard]] bool IsEmpty() const noexcept { return *this == CFieldValues(); }
  // The fields of one group.
  [[nodiscard]] CFieldValues Of(FieldGroup group) const;
  friend bool operator==(const CFieldValues&, const CFieldValues&) = default;

 private:
  std::array<std::optional<std::uint32_t>, kFieldCount> values_;
};

[[nodiscard]] FieldGroup GroupOf(Field field) noexcept;

// The field's name: a column of a file, and an option with two dashes before it.
[[nodiscard]] std::string_view ColumnOf(Field field) noexcept;

// What a text for this field may look like, for messages.
[[nodiscard]] std::string_view RangeOf(Field field) noexcept;

// The value that a text stands for; nothing when it is none of this field. "code:4" is the number 4 whatever
// the field: so a file can hold what has no word.
[[nodiscard]] std::optional<std::uint32_t> ValueOf(Field field, std::string_view text);

// The text that ValueOf reads back to this value.
[[nodiscard]] std::string TextOf(Field field, std::uint32_t value);

// Whether the product's rules for settings store this value; a driver may report others.
[[nodiscard]] bool IsStorable(Field field, std::uint32_t value) noexcept;

}  // namespace KdPort
