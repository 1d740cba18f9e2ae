// What the device page and the RS422/485 page decide. Portable.
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

// What the boxes show. High performance is the inverse of its parameter: the mode is what remains when the
// driver does not imitate the transmit FIFO of a built-in port.
[[nodiscard]] DeviceSwitches SwitchesOf(const CKdNBusUserModeInterface& set) noexcept;
void ApplySwitches(CKdNBusUserModeInterface& set, DeviceSwitches switches) noexcept;

// The COM name of an entry of the list: the entry without any " (in use)".
[[nodiscard]] CWideString ChosenComName(CWideString entry);

// The duplex mode that "Restore Defaults" shows for the driver's default: 0 is no mode of an RS-422/485 port,
// such a port starts as RS-422 full-duplex.
[[nodiscard]] std::uint32_t RestoredDuplexMode(std::uint32_t defaultMode) noexcept;
