// The instances of a device interface class, as SetupAPI lists them. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "base/device_handles.h"
#include "base/wide_string.h"

// Writes the thread's last error as a line on the standard output, the only line that the system ever writes
// there: without the list of devices nothing can be configured, and in a console the reason shows. To be
// called directly after the failing call.
void ReportClassDevsFailure();

// A device interface class and the device information set of its instances that a search has opened. The
// class id is copied; the set is owned and destroyed with the object. One object serves one thread.
class CKdSetupDi_DeviceInterface {
 public:
  explicit CKdSetupDi_DeviceInterface(const GUID& interfaceClass) noexcept
      : interfaceClass_(interfaceClass) {}
  CKdSetupDi_DeviceInterface(const CKdSetupDi_DeviceInterface&) = delete;
  CKdSetupDi_DeviceInterface& operator=(const CKdSetupDi_DeviceInterface&) = delete;
  virtual ~CKdSetupDi_DeviceInterface() = default;

 protected:
  [[nodiscard]] const GUID& InterfaceClass() const noexcept { return interfaceClass_; }
  // Opens the set of the interfaces that are active now, of all devices; with other flags, also of those that
  // were active before. Failure is reported on the standard output.
  [[nodiscard]] bool OpenInterfaces(DWORD flags = DIGCF_PRESENT);
  // The path of the interface with this index, from 0, as CreateFileW takes it. False at the end of the set
  // and when SetupAPI fails; `path` then stays as it was.
  [[nodiscard]] bool ReadPath(DWORD index, CWideString& path) const;

 private:
  GUID interfaceClass_;
  CDeviceInfoList interfaces_;
};
