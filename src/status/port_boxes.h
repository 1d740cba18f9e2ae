// What the check boxes for the handshake lines show. Portable.
//
// The boxes are "CTS always true" and "DSR always true" of the port page. The rules give changes, and
// ui/port_status_view.h makes them.
#pragma once

#include <cstdint>
#include <optional>

#include "config/vcp_parameters.h"

// What happens to a check box and its label; what is empty stays as it is.
struct BoxChange {
  std::optional<bool> checked{};
  std::optional<bool> boxEnabled{};
  std::optional<bool> labelEnabled{};
};
struct HandshakeChange {
  BoxChange cts;
  BoxChange dsr;
};

// The box of a line that applications always see asserted.
inline constexpr BoxChange kCheckedAndDisabled{.checked = true, .boxEnabled = false, .labelEnabled = false};

// What the boxes show after a refresh. The box of a line that the port lacks is checked, and the user cannot
// change it: CtsSupported or DsrSupported is 0, or it is an RS-422/485 port, which has no DSR and, in RS-485
// mode, no CTS. The other boxes show the port's settings. `portIndex` is the port's SerialPortIndex, from 1.
[[nodiscard]] HandshakeChange HandshakeAfterRefresh(const CVcpParameters& port,
                                                    std::uint32_t portIndex) noexcept;
