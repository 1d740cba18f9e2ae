#include "workbench/simulated_driver/set_layout.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace workbench {
namespace {

void Append(std::vector<std::byte>& stream, std::uint32_t number) {
  const auto bytes = std::as_bytes(std::span(&number, 1));
  stream.insert(stream.end(), bytes.begin(), bytes.end());
}

void Append(std::vector<std::byte>& stream, const std::string& text) {
  Append(stream, static_cast<std::uint32_t>(text.size()));
  const auto bytes = std::as_bytes(std::span(text.c_str(), text.size() + 1));
  stream.insert(stream.end(), bytes.begin(), bytes.end());
}

// What is left of a stream.
class Remaining {
 public:
  explicit Remaining(std::span<const std::byte> bytes) : bytes_(bytes) {}

  // Reads a value of the type that it has. False when the stream is too short or wrong.
  bool Take(ParameterValue& value) {
    if (auto* number = std::get_if<std::uint32_t>(&value)) return Take(*number);
    std::uint32_t length = 0;
    if (!Take(length) || bytes_.size() <= length || bytes_[length] != std::byte{0}) return false;
    const std::string text(reinterpret_cast<const char*>(bytes_.data()), length);
    bytes_ = bytes_.subspan(length + 1);
    value = text;
    return std::ranges::all_of(text, [](char c) { return c > 0; });
  }
  [[nodiscard]] std::size_t Size() const { return bytes_.size(); }

 private:
  bool Take(std::uint32_t& number) {
    if (bytes_.size() < sizeof number) return false;
    std::memcpy(&number, bytes_.data(), sizeof number);
    bytes_ = bytes_.subspan(sizeof number);
    return true;
  }

  std::span<const std::byte> bytes_;
};

std::string Shown(const ParameterValue& value) {
  const auto* number = std::get_if<std::uint32_t>(&value);
  return number ? std::to_string(*number) : "\"" + std::get<std::string>(value) + "\"";
}

}  // namespace

std::span<const Parameter> SetLayout(std::uint32_t selector) {
  if (selector == kPortSet) return kd_port_layout;
  if (selector == kBusSet) return kd_bus_layout;
  return {};
}

ParameterValues::ParameterValues(std::uint32_t selector) : selector_(selector) {
  if (SetLayout(selector).empty()) throw std::out_of_range("set " + std::to_string(selector));
  for (const Parameter& parameter : SetLayout(selector)) {
    values_.push_back(parameter.text ? ParameterValue(parameter.text) : parameter.number);
  }
}

std::uint32_t ParameterValues::Number(std::string_view name) const {
  return std::get<std::uint32_t>(values_[IndexOf(name)]);
}

const std::string& ParameterValues::Text(std::string_view name) const {
  return std::get<std::string>(values_[IndexOf(name)]);
}

void ParameterValues::SetNumber(std::string_view name, std::uint32_t number) {
  std::get<std::uint32_t>(values_[IndexOf(name)]) = number;
}

void ParameterValues::SetText(std::string_view name, std::string text) {
  std::get<std::string>(values_[IndexOf(name)]) = std::move(text);
}

std::size_t ParameterValues::IndexOf(std::string_view name) const {
  const auto layout = SetLayout(selector_);
  const auto found = std::ranges::find(layout, name, &Parameter::name);
  if (found == layout.end()) throw std::out_of_range("no parameter " + std::string(name));
  return static_cast<std::size_t>(found - layout.begin());
}

std::vector<std::byte> ParameterValues::Encode() const {
  std::vector<std::byte> stream;
  for (const ParameterValue& value : values_) {
    std::visit([&stream](const auto& content) { Append(stream, content); }, value);
  }
  return stream;
}

std::optional<ParameterValues> ParameterValues::Decode(std::uint32_t selector,
                                                       std::span<const std::byte> stream,
                                                       std::string& fault) {
  ParameterValues values(selector);
  Remaining remaining(stream);
  for (std::size_t at = 0; at < values.values_.size(); ++at) {
    if (remaining.Take(values.values_[at])) continue;
    fault = "the stream of " + std::to_string(stream.size()) + " bytes breaks at " +
            std::string(SetLayout(selector)[at].name);
    return std::nullopt;
  }
  if (remaining.Size() > 0) {
    fault = "the stream has " + std::to_string(remaining.Size()) + " bytes behind its last parameter";
    return std::nullopt;
  }
  return values;
}

std::vector<std::string> Differences(const ParameterValues& before, const ParameterValues& after) {
  std::vector<std::string> differences;
  for (std::size_t at = 0; at < before.values_.size(); ++at) {
    if (before.values_[at] == after.values_[at]) continue;
    differences.push_back(std::string(SetLayout(before.selector_)[at].name) + " " +
                          Shown(before.values_[at]) + " -> " + Shown(after.values_[at]));
  }
  return differences;
}

}  // namespace workbench
