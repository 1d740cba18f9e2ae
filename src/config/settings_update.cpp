#include "config/settings_update.h"

#include "base/export_guard.h"
#include "config/user_mode_config.h"
#include "install/devices/class_installer.h"
#include "install/devices/port_in_use.h"
#include "install/devices/ports_class.h"

namespace {

bool WriteNetworkInfo(CKdUserModeConfig& channel, const NetworkInfo& info) {
  CKdNBusUserModeInterface bus;
  CKdUVcpUserModeInterface port;
  if (!channel.GetParameterSet(bus, bus.kSelector) || !channel.GetParameterSet(port, port.kSelector)) {
    return false;
  }
  ApplyNetworkInfo(info, bus, port);
  return channel.SetParameterSet(bus, bus.kSelector) && channel.SetParameterSet(port, port.kSelector);
}

bool WriteLineSettings(CKdUserModeConfig& channel, const LineSettings& settings) {
  CKdUVcpUserModeInterface port;
  if (!channel.GetParameterSet(port, port.kSelector)) return false;
  ApplyLineSettings(settings, port);
  return channel.SetParameterSet(port, port.kSelector);
}

// A port that opens freely is left alone: its next user gets the new settings with the open.
// Kept on purpose: restart of a port in use
void RestartIfInUse(HDEVINFO devices, SP_DEVINFO_DATA& element, const CWideString& comName) {
  if (IsPortOpenable(comName)) return;
  DisableDevice(devices, element);
  EnableDevice(devices, element);
}

// Finds the port, lets `write` write to its drivers, and restarts it where necessary.
template <class Write>
int UpdatePort(const wchar_t* deviceInstanceId, Write&& write) {
  if (deviceInstanceId == nullptr) return 0;
  CDeviceInfoList devices;
  SP_DEVINFO_DATA element{};
  if (!OpenAllDevices(devices, DIGCF_PRESENT | DIGCF_ALLCLASSES) ||
      !OpenDeviceInfo(devices.Get(), deviceInstanceId, element,
                      DIOD_INHERIT_CLASSDRVS | DIOD_CANCEL_REMOVE)) {
    return 0;
  }
  CKdUserModeConfig channel(devices.Get(), element);
  CWideString comName;
  if (!channel.Device().GetRegString(kPortName, comName)) return 0;
  if (!channel.FindDeviceInterface() || !write(channel)) return 0;
  // The drivers have the settings: whatever the restart meets, memory running out included, they were pushed.
  return GuardBoundary(1, [&] {
    RestartIfInUse(devices.Get(), element, comName);
    return 1;
  });
}

}  // namespace

int UpdateNetworkInfo(const wchar_t* deviceInstanceId, const NetworkInfo& info) {
  return UpdatePort(deviceInstanceId,
                    [&](CKdUserModeConfig& channel) { return WriteNetworkInfo(channel, info); });
}

int UpdateLineSettings(const wchar_t* deviceInstanceId, const LineSettings& settings) {
  return UpdatePort(deviceInstanceId,
                    [&](CKdUserModeConfig& channel) { return WriteLineSettings(channel, settings); });
}
