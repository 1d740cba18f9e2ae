#include "ui/port_rules.h"

#include "config/port_type.h"

namespace {

// Stores a box into its setting; true when that changed it.
bool StoreBox(std::uint32_t& setting, std::uint32_t supported, bool checked) noexcept {
  if (checked == (setting != 0) || supported == 0) return false;
  setting = checked ? 1 : 0;
  return true;
}

}  // namespace

bool ApplyHandshake(CVcpParameters& port, std::uint32_t portIndex, HandshakeBoxes boxes,
                    bool settingsChanged) noexcept {
  bool changed = settingsChanged;
  if (!IsRs422485Port(port.PortType, portIndex)) {
    if (StoreBox(port.EmulateCTSTrue, port.CtsSupported, boxes.ctsAlwaysTrue)) changed = true;
    if (StoreBox(port.EmulateDSRTrue, port.DsrSupported, boxes.dsrAlwaysTrue)) changed = true;
  } else if (port.DuplexMode != kDuplexRs485) {
    if (StoreBox(port.EmulateCTSTrue, port.CtsSupported, boxes.ctsAlwaysTrue)) changed = true;
  }
  return changed;
}

HandshakeChange HandshakeAfterAdvanced(const CVcpParameters& port, std::uint32_t portIndex) noexcept {
  HandshakeChange change;
  if (IsRs422485Port(port.PortType, portIndex)) {
    change.cts = port.DuplexMode == kDuplexRs485 ? kCheckedAndDisabled
                                                 : BoxChange{port.EmulateCTSTrue != 0, true, true};
  }
  if (port.CtsSupported == 0) change.cts = kCheckedAndDisabled;
  // Kept on purpose: enabled DSR label
  if (port.DsrSupported == 0) change.dsr = {.checked = true, .boxEnabled = false};
  return change;
}
