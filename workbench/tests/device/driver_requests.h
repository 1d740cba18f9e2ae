// Requests that the drivers take and refuse: sent to the simulated driver by its own tests, and to the kernel
// driver beside it.
#pragma once

#include <optional>
#include <vector>

#include "workbench/simulated_driver/port_driver.h"

namespace workbench {

using Bytes = std::vector<std::byte>;

inline constexpr DriverOpen kAgreedOpen{
    .path = {}, .access = 0xC0000000, .disposition = OPEN_EXISTING, .flags = 0x40000000};

inline Bytes Header(std::uint32_t selector, std::uint32_t mark = 0xFFFFFFFF) {
  Bytes header;
  for (const std::uint32_t number : {selector, mark}) {
    for (unsigned shift = 0; shift < 32; shift += 8)
      header.push_back(static_cast<std::byte>(number >> shift));
  }
  return header;
}

// A header and a set as it is, or with the byte at `spoilt` changed to `value`, or cut or extended by
// `surplus`.
inline Bytes Write(std::uint32_t selector, int surplus = 0, std::size_t spoilt = 0, int value = 0) {
  Bytes bytes = Header(selector);
  const Bytes stream = ParameterValues(selector).Encode();
  bytes.insert(bytes.end(), stream.begin(), stream.end());
  if (spoilt != 0) bytes.at(8 + spoilt) = static_cast<std::byte>(value);
  bytes.resize(static_cast<std::size_t>(static_cast<int>(bytes.size()) + surplus));
  return bytes;
}

struct RequestRow {
  const char* name;
  std::optional<std::uint32_t> sizeOf;  // the size of this current set is asked for first
  DWORD code;
  Bytes input;
  std::size_t outputLength;
  bool accepted;
};

inline std::vector<RequestRow> RequestRows() {
  constexpr auto none = std::nullopt;
  constexpr auto port = kPortSet;
  constexpr auto bus = kBusSet;
  return {
      {"size of the port's set", none, kGetCurrentSize, Header(port), 4, true},
      {"size of the bus's defaults", none, kGetDefaultSize, Header(bus), 4, true},
      {"port's set", port, kGetCurrent, Header(port), 132, true},
      {"bus's set", bus, kGetCurrent, Header(bus), 151, true},
      {"write of the port's set", none, kSetCurrent, Write(port), 0, true},
      {"write of the bus's set", none, kSetCurrent, Write(bus), 0, true},
      {"unused code", none, 0x8001E00C, Header(port), 4, false},
      {"code beyond the last", none, 0x8001E018, Header(port), 4, false},
      {"no input", none, kGetCurrentSize, {}, 4, false},
      {"a byte less than a header", none, kGetCurrentSize, Write(port, -133), 4, false},
      {"a byte more than a header", none, kGetDefaultSize, Write(port, -131), 4, false},
      {"third set", none, kGetCurrentSize, Header(2), 4, false},
      {"wrong mark", none, kGetCurrentSize, Header(port, 0xFFFFFFFE), 4, false},
      {"size into 3 bytes", none, kGetCurrentSize, Header(port), 3, false},
      {"size into 8 bytes", none, kGetCurrentSize, Header(port), 8, false},
      {"size into nothing", none, kGetCurrentSize, Header(port), 0, false},
      {"read without size", none, kGetCurrent, Header(port), 132, false},
      {"read of the other set", port, kGetCurrent, Header(bus), 151, false},
      {"defaults after the current size", port, kGetDefault, Header(port), 132, false},
      {"read into too much", port, kGetCurrent, Header(port), 133, false},
      {"read into too little", port, kGetCurrent, Header(port), 131, false},
      {"write of a header", none, kSetCurrent, Header(port), 0, false},
      {"write a byte short", none, kSetCurrent, Write(port, -1), 0, false},
      {"write a byte long", none, kSetCurrent, Write(bus, 1), 0, false},
      {"write with an output buffer", none, kSetCurrent, Write(port), 4, false},
      {"text one shorter than it is", none, kSetCurrent, Write(bus, 0, 24, 2), 0, false},
      {"text one longer than it is", none, kSetCurrent, Write(bus, 0, 24, 4), 0, false},
      {"text longer than the set", none, kSetCurrent, Write(bus, 0, 27, 0x7F), 0, false},
      {"text without its zero", none, kSetCurrent, Write(bus, 0, 31, 'x'), 0, false},
      {"a zero inside a text", none, kSetCurrent, Write(bus, 0, 29, 0), 0, false},
      {"not a 7-bit character", none, kSetCurrent, Write(bus, 0, 28, 0xE4), 0, false},
  };
}

}  // namespace workbench
