// The values of a port's parameter sets, by name and as streams.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "workbench/kernel_driver/parameter_layout.h"

namespace workbench {

// Selectors of the two sets.
inline constexpr std::uint32_t kPortSet = 0;  // virtual COM port driver
inline constexpr std::uint32_t kBusSet = 1;   // network bus driver

// A DWORD, or narrow text of 7-bit characters.
using ParameterValue = std::variant<std::uint32_t, std::string>;

using Parameter = kd_parameter;

// The parameters of a set in stream order; empty for a selector that does not exist.
[[nodiscard]] std::span<const Parameter> SetLayout(std::uint32_t selector);

// The values of one set, complete from the start: every parameter has its initial value.
// Asking for a name that the set does not have, or with the wrong type, throws std::out_of_range or
// std::bad_variant_access.
class ParameterValues {
 public:
  explicit ParameterValues(std::uint32_t selector);

  [[nodiscard]] std::uint32_t Selector() const { return selector_; }
  [[nodiscard]] std::uint32_t Number(std::string_view name) const;
  [[nodiscard]] const std::string& Text(std::string_view name) const;
  void SetNumber(std::string_view name, std::uint32_t number);
  void SetText(std::string_view name, std::string text);

  // The stream: DWORDs little-endian, a text as its length in 4 bytes, its characters and a zero byte.
  [[nodiscard]] std::vector<std::byte> Encode() const;
  // Values out of a stream that must be exactly one set long. For another one, `fault` says what is wrong.
  [[nodiscard]] static std::optional<ParameterValues> Decode(std::uint32_t selector,
                                                             std::span<const std::byte> stream,
                                                             std::string& fault);

  bool operator==(const ParameterValues&) const = default;
  friend std::vector<std::string> Differences(const ParameterValues& before, const ParameterValues& after);

 private:
  [[nodiscard]] std::size_t IndexOf(std::string_view name) const;

  std::uint32_t selector_;
  std::vector<ParameterValue> values_;  // in the order of the layout
};

// "Baudrate 9600 -> 19200" for every parameter that differs; both of one selector.
[[nodiscard]] std::vector<std::string> Differences(const ParameterValues& before,
                                                   const ParameterValues& after);

}  // namespace workbench
