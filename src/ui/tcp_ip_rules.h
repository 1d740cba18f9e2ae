// What the TCP/IP page decides: ranges, what an apply changes, what a restore shows. Portable.
#pragma once

#include <cstdint>

#include "config/nbus_parameters.h"

// The largest numbers that the user may enter; the lowest is 0. The label of the time-out names 1 as its
// lowest value, the message about the range 0.
inline constexpr std::uint32_t kMaximumTcpPort = 65535;
inline constexpr std::uint32_t kMaximumAttemptTimeout = 20;  // seconds

// The settings of the page, as its fields show them. Time-outs are in seconds.
struct TcpIpFields {
  std::uint32_t tcpPort = 0;
  std::uint32_t attemptTimeout = 0;
  std::uint32_t idleTimeout = 0;  // has a hidden field: only a restore changes it
  bool verification = false;      // "Advanced Connection Verification"
};

// What the fields show for a parameter set. Verification is on unless both of its checks are ignored.
[[nodiscard]] TcpIpFields FieldsOf(const CKdNBusUserModeInterface& set) noexcept;

// What the fields show after "Restore Defaults": the TCP port stays, because the device server listens there;
// the rest comes from the defaults. Nothing is written.
[[nodiscard]] TcpIpFields RestoredFields(const CKdNBusUserModeInterface& current,
                                         const CKdNBusUserModeInterface& defaults) noexcept;

// Stores the fields in the set, in memory only; true when a parameter has changed and the set is to be
// written. Both parameters of the verification become the inverse of the box: a set in which they differ
// changes even when the user has changed nothing.
[[nodiscard]] bool ApplyFields(CKdNBusUserModeInterface& set, const TcpIpFields& fields) noexcept;
