// What the TCP/IP page decides: ranges, what an apply changes, what a restore shows. Portable.
#pragma once

#include <cstdint>

#include "config/nbus_parameters.h"

// Bounds of what the user may enter. The label of the time-out names 1 as the lowest value; 0 is accepted all
// the same, as the message about the range says.
inline constexpr std::uint32_t kMaximumTcpPort = 65535;
inline constexpr std::uint32_t kMaximumAttemptTimeout = 20;  // seconds

// The settings of the page, as they stand in its fields. Time-outs are in seconds.
struct TcpIpFields {
  std::uint32_t tcpPort = 0;
  std::uint32_t attemptTimeout = 0;
  std::uint32_t idleTimeout = 0;  // has a hidden field: only a restore changes it
  bool verification = false;      // "Advanced Connection Verification"
};

// What the fields show for a parameter set. Verification is on unless both of its checks are ignored.
[[nodiscard]] TcpIpFields FieldsOf(const CKdNBusUserModeInterface& set) noexcept;

// What the fields show after "Restore Defaults": the connection's TCP port stays, it is where the device
// server listens and no matter of taste; the rest comes from the defaults.
[[nodiscard]] TcpIpFields RestoredFields(const CKdNBusUserModeInterface& current,
                                         const CKdNBusUserModeInterface& defaults) noexcept;

// Takes the fields over; true when a parameter has changed and the set is to be written. The two parameters
// of the verification both become the inverse of the box: a set in which they differ changes even when the
// user has touched nothing.
[[nodiscard]] bool ApplyFields(CKdNBusUserModeInterface& set, const TcpIpFields& fields) noexcept;
