// The two exports that push settings into a port's drivers. What they do is in config/settings_update.h;
// here is only the boundary.
#include <kdui10.h>

#include <type_traits>

#include "base/export_guard.h"
#include "config/settings_update.h"

extern "C" KdUpdateResult WINAPI KdNPortNetworkInfoUpdate(PCWSTR deviceInstanceId, PVOID, UINT32 address,
                                                          UINT32 dataPort, UINT32, UINT32 configPort,
                                                          UINT32 webPort, UINT32 mac1, UINT32 mac2,
                                                          UINT32 duplexMode, UINT32 portType) {
  return GuardBoundary(KdUpdateResult{0}, [&] {
    const NetworkInfo info = {.address = address,
                              .dataPort = dataPort,
                              .configPort = configPort,
                              .webPort = webPort,
                              .mac1 = mac1,
                              .mac2 = mac2,
                              .duplexMode = duplexMode,
                              .portType = portType};
    return static_cast<KdUpdateResult>(UpdateNetworkInfo(deviceInstanceId, info));
  });
}

extern "C" KdUpdateResult WINAPI KdNPortSettingsUpdate(PCWSTR deviceInstanceId, PVOID, UINT32 baudRate,
                                                       UINT32 dataBits, UINT32 parity, UINT32 stopBits,
                                                       UINT32 flowControl) {
  return GuardBoundary(KdUpdateResult{0}, [&] {
    const LineSettings settings = {.baudRate = baudRate,
                                   .dataBits = dataBits,
                                   .parity = parity,
                                   .stopBits = stopBits,
                                   .flowControl = flowControl};
    return static_cast<KdUpdateResult>(UpdateLineSettings(deviceInstanceId, settings));
  });
}

static_assert(std::is_same_v<KdNPortNetworkInfoUpdateFn, decltype(&KdNPortNetworkInfoUpdate)>);
static_assert(std::is_same_v<KdNPortSettingsUpdateFn, decltype(&KdNPortSettingsUpdate)>);
