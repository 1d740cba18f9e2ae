#include "ui/device_rules.h"

#include "config/port_type.h"

// Kept on purpose: inverse box
DeviceSwitches SwitchesOf(const CKdNBusUserModeInterface& set) noexcept {
  return {.connectOffline = set.ForceCOMPortConnect != 0, .highPerformance = set.RealTxFifoEmulation == 0};
}

void ApplySwitches(CKdNBusUserModeInterface& set, DeviceSwitches switches) noexcept {
  set.ForceCOMPortConnect = switches.connectOffline ? 1 : 0;
  set.RealTxFifoEmulation = switches.highPerformance ? 0 : 1;
}

CWideString ChosenComName(CWideString entry) {
  entry.Replace(L" (in use)", L"");
  return entry;
}

std::uint32_t RestoredDuplexMode(std::uint32_t defaultMode) noexcept {
  return defaultMode != 0 ? defaultMode : kDuplexRs422;
}
