// The device server that a port belongs to. Windows only.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include "base/device_handles.h"

// Finds the parent of a device in the device tree, in a device information set of its own, which the
// destructor destroys. One object serves one thread.
//
// The pages and the update exports use this class, which finds devices that are present only.
// CParentDevice (install/devices/device_tree.h) is the installation's: it opens the parent present or not,
// and knows its instance id.
class CKdSetupDi_ParentDevice {
 public:
  // Set and element of the child are borrowed and must outlive the object.
  CKdSetupDi_ParentDevice(HDEVINFO childSet, SP_DEVINFO_DATA& child) noexcept
      : childSet_(childSet), child_(child) {}
  CKdSetupDi_ParentDevice(const CKdSetupDi_ParentDevice&) = delete;
  CKdSetupDi_ParentDevice& operator=(const CKdSetupDi_ParentDevice&) = delete;
  virtual ~CKdSetupDi_ParentDevice() = default;

  // Compares the device nodes of all present devices with the parent's. False when the child has no parent,
  // when the parent is not present, or when the list of devices is not available, which is reported on the
  // standard output.
  [[nodiscard]] bool FindParentDevice();

  // Valid after a successful FindParentDevice, for the life of this object; both stay the object's.
  [[nodiscard]] HDEVINFO ParentSet() const noexcept { return devices_.Get(); }
  [[nodiscard]] SP_DEVINFO_DATA& Parent() noexcept { return parent_; }

  // What the constructor was given.
  [[nodiscard]] HDEVINFO ChildSet() const noexcept { return childSet_; }
  [[nodiscard]] SP_DEVINFO_DATA& Child() const noexcept { return child_; }

 private:
  HDEVINFO childSet_;
  SP_DEVINFO_DATA& child_;
  SP_DEVINFO_DATA parent_{};
  CDeviceInfoList devices_;
};
