#include "kdport/model/fields.h"

#include <algorithm>
#include <charconv>
#include <span>

namespace KdPort {

namespace {

struct Word {
  std::string_view text;
  std::uint32_t value;
};
constexpr Word kDataBits[] = {{"5", 0}, {"6", 1}, {"7", 2}, {"8", 3}};
constexpr Word kParities[] = {{"none", 0}, {"odd", 1}, {"even", 2}, {"mark", 3}, {"space", 4}};
constexpr Word kStopBits[] = {{"1", 0}, {"1.5", 1}, {"2", 2}};
constexpr Word kFlowControls[] = {{"none", 0}, {"rtscts", 1}, {"dtrdsr", 2}, {"xonxoff", 4}};
constexpr std::uint32_t kFlowControlBits = 0xF;

enum class Kind { Number, Words, Address };
struct Row {
  std::string_view column;
  FieldGroup group;
  Kind kind;
  std::span<const Word> words;
  std::uint32_t lowest;  // of numbers
  std::uint32_t highest;
  std::string_view range;
};
constexpr std::uint32_t kAny = 0xFFFFFFFF;
constexpr std::string_view kTcpPorts = "1 to 65535";
// In the order of Field.
constexpr Row kRows[] = {
    {"baud", FieldGroup::Settings, Kind::Number, {}, 1, kAny, "bits per second"},
    {"data", FieldGroup::Settings, Kind::Words, kDataBits, 0, 0, "5 to 8"},
    {"parity", FieldGroup::Settings, Kind::Words, kParities, 0, 0, "none, odd, even, mark or space"},
    {"stop", FieldGroup::Settings, Kind::Words, kStopBits, 0, 0, "1, 1.5 or 2"},
    {"flow", FieldGroup::Settings, Kind::Words, kFlowControls, 0, 0, "none, rtscts, dtrdsr or xonxoff"},
    {"address", FieldGroup::Network, Kind::Address, {}, 1, kAny, "an IPv4 address"},
    {"data-port", FieldGroup::Network, Kind::Number, {}, 1, 65535, kTcpPorts},
    {"config-port", FieldGroup::Network, Kind::Number, {}, 1, 65535, kTcpPorts},
    {"web-port", FieldGroup::Network, Kind::Number, {}, 1, 65535, kTcpPorts},
};
static_assert(std::size(kRows) == kFieldCount);

constexpr std::string_view kCode = "code:";

const Row& RowOf(Field field) {
  return kRows[static_cast<std::size_t>(field)];
}

std::optional<std::uint32_t> NumberOf(std::string_view text) {
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole ? std::optional(value) : std::nullopt;
}

std::optional<std::uint32_t> AddressOf(std::string_view text) {
  std::uint32_t address = 0;
  for (int part = 0; part < 4; ++part) {
    const std::size_t end = part < 3 ? text.find('.') : text.size();
    if (end > 3) return std::nullopt;  // a missing dot too
    const auto number = NumberOf(text.substr(0, end));
    if (!number || *number > 255) return std::nullopt;
    address = address << 8 | *number;
    text.remove_prefix(part < 3 ? end + 1 : end);
  }
  return address;
}

std::string AddressText(std::uint32_t address) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    text += std::to_string(address >> shift & 0xFF);
    if (shift > 0) text += '.';
  }
  return text;
}

std::optional<std::uint32_t> PlainValueOf(const Row& row, std::string_view text) {
  if (row.kind == Kind::Words) {
    const auto word = std::ranges::find(row.words, text, &Word::text);
    return word != row.words.end() ? std::optional(word->value) : std::nullopt;
  }
  const auto value = row.kind == Kind::Address ? AddressOf(text) : NumberOf(text);
  return value && *value >= row.lowest && *value <= row.highest ? value : std::nullopt;
}

std::string PlainTextOf(const Row& row, std::uint32_t value) {
  if (row.kind == Kind::Words) {
    const auto word = std::ranges::find(row.words, value, &Word::value);
    return word != row.words.end() ? std::string(word->text) : std::string();
  }
  if (value < row.lowest || value > row.highest) return {};
  return row.kind == Kind::Address ? AddressText(value) : std::to_string(value);
}

}  // namespace

CFieldValues CFieldValues::Of(FieldGroup group) const {
  CFieldValues values;
  for (const Field field : kFields) {
    if (GroupOf(field) == group) values[field] = (*this)[field];
  }
  return values;
}

FieldGroup GroupOf(Field field) noexcept {
  return RowOf(field).group;
}

std::string_view ColumnOf(Field field) noexcept {
  return RowOf(field).column;
}

std::string_view RangeOf(Field field) noexcept {
  return RowOf(field).range;
}

std::optional<std::uint32_t> ValueOf(Field field, std::string_view text) {
  if (text.starts_with(kCode)) return NumberOf(text.substr(kCode.size()));
  return PlainValueOf(RowOf(field), text);
}

std::string TextOf(Field field, std::uint32_t value) {
  std::string text = PlainTextOf(RowOf(field), value);
  return text.empty() ? std::string(kCode) + std::to_string(value) : text;
}

bool IsStorable(Field field, std::uint32_t value) noexcept {
  // Any combination of the four methods is stored, with bits of the driver's own above them.
  if (field == Field::FlowControl) return value == 0 || (value & kFlowControlBits) != 0;
  const Row& row = RowOf(field);
  return row.kind != Kind::Words || value < row.words.size();
}

}  // namespace KdPort
