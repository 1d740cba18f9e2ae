// Small decisions of the installation that need nothing of Windows. Portable.
#pragma once

#include <cstdint>

#include "base/wide_string.h"

// The name of the key below a device server's "Device Parameters" under which the settings of the port with
// this instance id wait for a reinstallation to end.
[[nodiscard]] CWideString BackupKeyName(const CWideString& portInstanceId);

// Whether a port value tells what the hardware can do ("...Supported..."). Such a value comes from the
// driver that is installed now and must not come back from a backup of the one before.
[[nodiscard]] bool IsCapabilityValue(const CWideString& valueName) noexcept;

// Whether a device's "NoUpgrade" value forbids to update its driver through the user interface.
[[nodiscard]] bool ForbidsDriverUpdate(const CWideString& noUpgrade) noexcept;

// Whether this version of Windows lets ports be put in order while they are installed.
[[nodiscard]] bool SortsPortNames(std::uint32_t majorVersion, std::uint32_t minorVersion) noexcept;
