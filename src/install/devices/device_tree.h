// Moving about in the device tree. Windows only.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <optional>
#include <vector>

#include "base/device_handles.h"
#include "base/wide_string.h"

// The instance id of a node; on failure `id` stays as it was.
[[nodiscard]] bool GetInstanceId(DEVINST node, CWideString& id);

// The children of a node in the order in which the bus driver enumerates them. Collected before anything is
// done with them, so that removing one does not cut off the way to the next.
[[nodiscard]] std::vector<DEVINST> ChildrenOf(DEVINST node);

// A set without a class and without devices; an empty holder when it cannot be made.
[[nodiscard]] CDeviceInfoList CreateEmptyDeviceInfoList();

// The device that a child hangs on, opened into a set of its own.
class CParentDevice {
 public:
  // Finds and opens the parent; false when one of the steps fails. InstanceId() is known as soon as the
  // parent has one, also when it cannot be opened.
  [[nodiscard]] bool Open(const SP_DEVINFO_DATA& child);

  [[nodiscard]] const CWideString& InstanceId() const noexcept { return instanceId_; }
  [[nodiscard]] HDEVINFO Set() const noexcept { return set_.Get(); }
  [[nodiscard]] SP_DEVINFO_DATA& Element() noexcept { return element_; }

 private:
  CWideString instanceId_;
  CDeviceInfoList set_;
  SP_DEVINFO_DATA element_{};
};

// The instance id of the child's parent; on failure `id` stays as it was.
[[nodiscard]] bool GetParentInstanceId(const SP_DEVINFO_DATA& child, CWideString& id);
