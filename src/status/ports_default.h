// The default-settings string that Windows keeps for a COM port. Portable.
//
// CUtils::WritePortsDefaultSettings writes it. The installation writes "9600,n,8,1", with the parity first.
// Kept on purpose: two orders
#pragma once

#include <cstdint>
#include <optional>

#include "base/wide_string.h"

// "baud,data bits,parity,stop bits[,flow control]" of settings in index form: 9600,8,n,1 or 9600,8,n,1,x.
// Any baud rate is taken. Nothing when another setting has no letter or digit in such a string. The index
// form is that of status/serial_words.h. Kept on purpose: DTR/DSR as p
[[nodiscard]] std::optional<CWideString> PortsDefaultSettings(std::uint32_t baudRate,
                                                              std::uint32_t dataBitsIndex,
                                                              std::uint32_t parityIndex,
                                                              std::uint32_t stopBitsIndex,
                                                              std::uint32_t flowControl);
