// A device that an operation of kdport works on.
#pragma once

#include <string>

#include "base/device_handles.h"
#include "kdport/run/host_access.h"

namespace KdPort {

class COpenDevice {
 public:
  // Gone when the device is not present any more.
  [[nodiscard]] Outcome Open(const std::string& instanceId);
  // Whether it is started, as a device is that works.
  [[nodiscard]] bool IsStarted() const;

  [[nodiscard]] HDEVINFO Set() const noexcept { return devices_.Get(); }
  [[nodiscard]] const SP_DEVINFO_DATA& Element() const noexcept { return element_; }

 private:
  CDeviceInfoList devices_;
  SP_DEVINFO_DATA element_{};
};

}  // namespace KdPort
