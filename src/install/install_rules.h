// Small decisions of the installation that need nothing of Windows. Portable.
//
// They take texts as the registry holds them, empty ones included, and never fail. Any thread.
#pragma once

#include <cstdint>

#include "base/wide_string.h"

// The name of the key below a device server's "Device Parameters" that holds the settings of the port with
// this instance id during a reinstallation. Without backslashes. Kept on purpose: backup key name
[[nodiscard]] CWideString BackupKeyName(const CWideString& portInstanceId);

// Whether a port value says what the hardware can do: its name contains "Supported". Such a value comes from
// the driver that is installed now and must not come back from a backup of the one before.
[[nodiscard]] bool IsCapabilityValue(const CWideString& valueName) noexcept;

// Whether a device's "NoUpgrade" value forbids an update of its driver from Device Manager: a text that
// begins with the number 1.
[[nodiscard]] bool ForbidsDriverUpdate(const CWideString& noUpgrade) noexcept;

// Whether ports are sorted by name while they are installed, on this version of Windows: 6.1 and later.
// Kept on purpose: version 7
[[nodiscard]] bool SortsPortNames(std::uint32_t majorVersion, std::uint32_t minorVersion) noexcept;
