// What the device page and the RS422/485 page decide. Portable.
//
// The functions work on parameter sets in memory; reading and writing the drivers is the pages' part.
#pragma once

#include <cstdint>

#include "base/wide_string.h"
#include "config/nbus_parameters.h"

// The two boxes of the device page.
struct DeviceSwitches {
  bool connectOffline = false;   // "Port Accessible When Device is Offline"
  bool highPerformance = false;  // "Enable High Performance Mode"
  bool operator==(const DeviceSwitches&) const = default;
};

// What the boxes show for a set, and the set for what they show. "High Performance" is checked when the
// driver does not emulate the transmit FIFO of a built-in port. Kept on purpose: inverse box
[[nodiscard]] DeviceSwitches SwitchesOf(const CKdNBusUserModeInterface& set) noexcept;
void ApplySwitches(CKdNBusUserModeInterface& set, DeviceSwitches switches) noexcept;

// The COM name of an entry of the list (ComNameList): the entry without any " (in use)".
[[nodiscard]] CWideString ChosenComName(CWideString entry);

// The duplex mode that "Restore Defaults" shows for the driver's default: kDuplexRs422 for 0, which is no
// mode of an RS-422/485 port.
[[nodiscard]] std::uint32_t RestoredDuplexMode(std::uint32_t defaultMode) noexcept;
