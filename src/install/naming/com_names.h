// Rules about COM names, COM numbers and the models that want particular ones. Portable.
//
// A COM name is "COM" and a decimal number; ComNumberOf (base/decimal.h) reads the number. Any thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "base/wide_string.h"

// The name of a number: "COM7". A COM name is never built in another way.
[[nodiscard]] CWideString ComNameOf(std::int32_t number);

// The COM name database's report of the numbers that are taken: one byte for each number, number 1 first, 0
// for a free one.
inline constexpr std::size_t kComUsageBytes = 256;
using ComUsage = std::array<std::uint8_t, kComUsageBytes>;

// Whether a number is free. Numbers without a byte (0 and those above 256) count as taken.
[[nodiscard]] bool IsNumberFree(const ComUsage& usage, std::uint32_t number) noexcept;

// The lowest free number from `first` to `last`, both included, or nothing.
[[nodiscard]] std::optional<std::uint32_t> FirstFreeNumber(const ComUsage& usage, std::uint32_t first,
                                                           std::uint32_t last) noexcept;

// The new number of a device that has to give up `name`: the lowest free one from `first` to 254. `usage` is
// null when the database did not answer. Without a free number, or a database, it is computed from the length
// of the name and may be taken. Kept on purpose: number from a length
[[nodiscard]] std::uint32_t NumberForMovedHolder(const ComUsage* usage, std::uint32_t first,
                                                 const CWideString& name) noexcept;

// The hardware part of an instance id, in upper case: "USB\VID_3A7E&PID_1015\6&2c" gives
// "USB\VID_3A7E&PID_1015". An id without a second backslash is its own hardware part.
[[nodiscard]] CWideString HardwareIdOf(const CWideString& instanceId);

// The COM number that the port of a USB device always has, by the device's hardware id in upper case; nothing
// for all other devices.
[[nodiscard]] std::optional<std::int32_t> FixedComNumber(const CWideString& parentHardwareId);

// Whether a port of this device takes over a taken number without asking. An empty id does not.
// Kept on purpose: lower-case Vid
[[nodiscard]] bool TakesNumberUnasked(const CWideString& parentHardwareId);
