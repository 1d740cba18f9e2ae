// Settings of a device server's ports, and where they are while the server is installed again.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "workbench/machine/builders.h"

namespace workbench {

// A value of a port's key. A backup holds it under the same name.
struct PortSetting {
  const wchar_t* name;
  std::uint32_t value;
};
inline constexpr std::array<PortSetting, 3> kPortSettings = {
    {{L"Baudrate", 115200}, {L"FlowControl", 2}, {L"ConnectionIdleTimeout", 90}}};

// Puts a server's ports to use: with settings, a capability and, with `pages`, with values of the pages.
void SetSettings(Machine& machine, const DeviceServer& server, bool pages);
// Whether all settings are in the port's key; each in its key or in the backup below its server.
[[nodiscard]] bool HasSettings(Machine& machine, const Device& port);
[[nodiscard]] bool KeepsSettings(Machine& machine, const Device& port);

}  // namespace workbench
