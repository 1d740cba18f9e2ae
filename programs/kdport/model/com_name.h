// COM names in kdport's text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace KdPort {

// COM numbers that a port can be given.
inline constexpr std::int32_t kHighestNumber = 255;

[[nodiscard]] std::string ComName(std::int32_t number);

// The number of a well-formed COM name from COM1 to COM255, upper or lower case; 0 for any other text.
[[nodiscard]] std::int32_t ComNumber(std::string_view name);

// Upper case for the 26 letters; what names and instance ids are compared in.
[[nodiscard]] std::string Folded(std::string_view text);

}  // namespace KdPort
