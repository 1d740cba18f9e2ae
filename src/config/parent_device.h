// The device server that a port belongs to. Windows only.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include "base/device_handles.h"

// Finds the parent of a device in the device tree, in a device information set of its own, which the
// destructor destroys.
class CKdSetupDi_ParentDevice {
 public:
  // Set and element of the child are borrowed and must outlive the object.
  CKdSetupDi_ParentDevice(HDEVINFO childSet, SP_DEVINFO_DATA& child) noexcept
      : childSet_(childSet), child_(child) {}
  CKdSetupDi_ParentDevice(const CKdSetupDi_ParentDevice&) = delete;
  CKdSetupDi_ParentDevice& operator=(const CKdSetupDi_ParentDevice&) = delete;
  virtual ~CKdSetupDi_ParentDevice() = default;

  // Looks at devices that are present only. A list of devices that is not available is reported on the
  // standard output.
  [[nodiscard]] bool FindParentDevice();

  // Valid after a successful FindParentDevice, for the life of this object.
  [[nodiscard]] HDEVINFO ParentSet() const noexcept { return devices_.Get(); }
  [[nodiscard]] SP_DEVINFO_DATA& Parent() noexcept { return parent_; }

  [[nodiscard]] HDEVINFO ChildSet() const noexcept { return childSet_; }
  [[nodiscard]] SP_DEVINFO_DATA& Child() const noexcept { return child_; }

 private:
  HDEVINFO childSet_;
  SP_DEVINFO_DATA& child_;
  SP_DEVINFO_DATA parent_{};
  CDeviceInfoList devices_;
};
