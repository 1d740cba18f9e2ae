// The words for serial settings, from both numeric forms. Portable.
//
// The index form is what the drivers' parameter sets hold: data bits 0 to 3 for 5 to 8; parity 0 to 4 for
// none, odd, even, mark, space; stop bits 0 to 2 for 1, 1.5, 2; flow control 0 none, 1 CTS/RTS, 2 DTR/DSR,
// 4 Xon/Xoff; duplex mode 0 to 2. The code form is what a device server writes into its status document:
// decimal text, counted from 1, except the duplex mode, which is the same in both forms.
//
// Every value has an answer; nothing fails but memory (std::bad_alloc, in the functions that return text).
#pragma once

#include <cstdint>
#include <string_view>

#include "base/wide_string.h"

// The words for a driver's setting. Kept on purpose: no Xon/Xoff word
[[nodiscard]] CWideString DataBitsIndexToText(std::uint32_t index);  // unknown: the empty text
[[nodiscard]] CWideString ParityIndexToText(std::uint32_t index);    // unknown, here and below: "None"
[[nodiscard]] CWideString StopBitsIndexToText(std::uint32_t index);
[[nodiscard]] CWideString FlowControlIndexToText(std::uint32_t index);
[[nodiscard]] CWideString DuplexIndexToText(std::uint32_t index);

// The words for a device server's report. Text without a number at its front is read as code 0.
[[nodiscard]] CWideString ParityCodeToText(std::wstring_view code);
[[nodiscard]] CWideString StopBitsCodeToText(std::wstring_view code);
[[nodiscard]] CWideString FlowControlCodeToText(std::wstring_view code);
[[nodiscard]] CWideString DuplexCodeToText(std::wstring_view code);

// The driver's setting for a device server's code. An unknown code gives index 0.
// Kept on purpose: stop bit codes, Xon/Xoff is 4
[[nodiscard]] std::uint32_t ParityCodeToIndex(std::uint32_t code) noexcept;
[[nodiscard]] std::uint32_t StopBitsCodeToIndex(std::uint32_t code) noexcept;
[[nodiscard]] std::uint32_t FlowControlCodeToIndex(std::uint32_t code) noexcept;
[[nodiscard]] std::uint32_t DuplexCodeToIndex(std::uint32_t code) noexcept;
