// The instances of a device interface class, as SetupAPI lists them. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "base/device_handles.h"
#include "base/wide_string.h"

// The one trace line of the system, on the standard output, with the last error: without the list of devices
// nothing can be configured, and an administrator who runs a management program in a console sees why.
// Always false.
bool ReportClassDevsFailure();

// A device interface class and the set of its instances that a search has opened; destroys the set.
class CKdSetupDi_DeviceInterface {
 public:
  explicit CKdSetupDi_DeviceInterface(const GUID& interfaceClass) noexcept
      : interfaceClass_(interfaceClass) {}
  CKdSetupDi_DeviceInterface(const CKdSetupDi_DeviceInterface&) = delete;
  CKdSetupDi_DeviceInterface& operator=(const CKdSetupDi_DeviceInterface&) = delete;
  virtual ~CKdSetupDi_DeviceInterface() = default;

 protected:
  [[nodiscard]] const GUID& InterfaceClass() const noexcept { return interfaceClass_; }
  // Opens the set of the interfaces that are there now. Failure is reported on the standard output.
  [[nodiscard]] bool OpenInterfaces();
  // The path of the interface with this index; false at the end of the set and when SetupAPI fails.
  [[nodiscard]] bool ReadPath(DWORD index, CWideString& path) const;

 private:
  GUID interfaceClass_;
  CDeviceInfoList interfaces_;
};
