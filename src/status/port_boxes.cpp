#include "status/port_boxes.h"

#include "config/port_type.h"

HandshakeChange HandshakeAfterRefresh(const CVcpParameters& port, std::uint32_t portIndex) noexcept {
  HandshakeChange change;
  if (IsRs422485Port(port.PortType, portIndex)) {
    change.dsr = kCheckedAndDisabled;
    change.cts = port.DuplexMode == kDuplexRs485 ? kCheckedAndDisabled
                                                 : BoxChange{port.EmulateCTSTrue != 0, true, true};
  } else {
    change.cts.checked = port.EmulateCTSTrue != 0;
    change.dsr.checked = port.EmulateDSRTrue != 0;
  }
  if (port.CtsSupported == 0) change.cts = kCheckedAndDisabled;
  if (port.DsrSupported == 0) change.dsr = kCheckedAndDisabled;
  return change;
}
