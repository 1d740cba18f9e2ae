// Network addresses as the pages show them. Portable. Every value has a text.
#pragma once

#include <cstdint>

#include "base/wide_string.h"

// "11:22:33:AA:BB:CC" from the three low bytes of each half, most significant first; the high byte of a half
// is not part of the address.
[[nodiscard]] CWideString MacText(std::uint32_t firstHalf, std::uint32_t secondHalf);

// "192.168.0.1"; the most significant byte comes first.
[[nodiscard]] CWideString Ipv4Text(std::uint32_t address);
