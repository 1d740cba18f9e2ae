// The default-settings string that Windows keeps for a COM port. Portable.
#pragma once

#include <cstdint>
#include <optional>

#include "base/wide_string.h"

// "baud,data bits,parity,stop bits[,flow control]" of settings in index form: 9600,8,n,1 or 9600,8,n,1,x.
// Nothing when one of them, the baud rate excepted, is out of range.
[[nodiscard]] std::optional<CWideString> PortsDefaultSettings(std::uint32_t baudRate,
                                                              std::uint32_t dataBitsIndex,
                                                              std::uint32_t parityIndex,
                                                              std::uint32_t stopBitsIndex,
                                                              std::uint32_t flowControl);
