// Moving about in the device tree. Windows only.
//
// Nodes (DEVINST) are numbers and need no release; they are valid while their device is in the tree. Any
// thread.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <optional>
#include <vector>

#include "base/device_handles.h"
#include "base/wide_string.h"

// The instance id of a node, such as "KDBUS\SERVER\1&2"; on failure `id` stays as it was.
[[nodiscard]] bool GetInstanceId(DEVINST node, CWideString& id);

// The children of a node in the order in which the bus driver enumerates them; empty when there are none or
// the node is unknown. All are collected before the caller does anything with them, because a child that has
// been removed does not lead to the next one.
[[nodiscard]] std::vector<DEVINST> ChildrenOf(DEVINST node);

// A device information set without a class and without devices, for OpenDeviceInfo; an empty holder when it
// cannot be made.
[[nodiscard]] CDeviceInfoList CreateEmptyDeviceInfoList();

// The parent of a device, present or not, opened into a device information set of its own. One object serves
// one thread. CKdSetupDi_ParentDevice (config/parent_device.h) is the pages' way to a parent: it searches
// among the present devices.
class CParentDevice {
 public:
  // Finds and opens the parent; false when one of the steps fails. InstanceId() is set as soon as the parent
  // has one, also when it cannot be opened; Set() and Element() are valid after true only.
  [[nodiscard]] bool Open(const SP_DEVINFO_DATA& child);

  [[nodiscard]] const CWideString& InstanceId() const noexcept { return instanceId_; }
  [[nodiscard]] HDEVINFO Set() const noexcept { return set_.Get(); }
  [[nodiscard]] SP_DEVINFO_DATA& Element() noexcept { return element_; }

 private:
  CWideString instanceId_;
  CDeviceInfoList set_;
  SP_DEVINFO_DATA element_{};
};

// The instance id of the child's parent, without opening it; on failure `id` stays as it was.
[[nodiscard]] bool GetParentInstanceId(const SP_DEVINFO_DATA& child, CWideString& id);
