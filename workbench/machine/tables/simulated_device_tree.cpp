// The configuration manager: walking the tree of devices.
#include <windows.h>

#include <cfgmgr32.h>

#include <algorithm>

#include "workbench/machine/tables/tables.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

CONFIGRET Reject(MachineLock& machine, const char* why, CONFIGRET code) {
  machine->Calls().Violate(why);
  return code;
}

// The device of a node; notes its id in the log.
Device* Named(MachineLock& machine, DEVINST node) {
  Device* device = machine->Devices().FindNode(node);
  if (device != nullptr) machine->Calls().Note(device->instanceId);
  return device;
}

// Answers a question about a node, after the checks that all of them share.
template <class Answer>
CONFIGRET About(DEVINST node, bool hasPlace, ULONG flags, Answer answer) {
  MachineLock machine;
  if (!hasPlace) return Reject(machine, "no place for the result", CR_INVALID_POINTER);
  if (flags != 0) return Reject(machine, "flags must be 0", CR_INVALID_FLAG);
  const Device* device = Named(machine, node);
  return device == nullptr ? Reject(machine, "not a device node", CR_INVALID_DEVNODE) : answer(*device);
}

CONFIGRET WINAPI GetParent(DEVINST* parent, DEVINST node, ULONG flags) {
  return About(node, parent != nullptr, flags, [&](const Device& device) -> CONFIGRET {
    if (device.removed || device.parent == nullptr) return CR_NO_SUCH_DEVNODE;
    *parent = device.parent->node;
    return CR_SUCCESS;
  });
}

// The first device from `from` on that is there.
template <class Iterator>
CONFIGRET FirstPresent(Iterator from, Iterator end, DEVINST* result) {
  const auto found = std::find_if(from, end, [](auto* one) { return !one->removed && one->present; });
  if (found == end) return CR_NO_SUCH_DEVNODE;
  *result = (*found)->node;
  return CR_SUCCESS;
}

CONFIGRET WINAPI GetChild(DEVINST* child, DEVINST node, ULONG flags) {
  return About(node, child != nullptr, flags, [&](const Device& device) -> CONFIGRET {
    return FirstPresent(device.children.begin(), device.children.end(), child);
  });
}

// A removed device's node lingers until its bus enumerates again: the walk over the children may remove
// the one that it stands on.
CONFIGRET WINAPI GetSibling(DEVINST* sibling, DEVINST node, ULONG flags) {
  return About(node, sibling != nullptr, flags, [&](const Device& device) -> CONFIGRET {
    if (device.parent == nullptr) return CR_NO_SUCH_DEVNODE;
    const auto& all = device.parent->children;
    return FirstPresent(std::ranges::find(all, &device) + 1, all.end(), sibling);
  });
}

CONFIGRET WINAPI GetIdSize(ULONG* length, DEVINST node, ULONG flags) {
  return About(node, length != nullptr, flags, [&](const Device& device) -> CONFIGRET {
    *length = static_cast<ULONG>(device.instanceId.size());  // without the terminator
    return CR_SUCCESS;
  });
}

// Windows fills a buffer that has no room for the terminator, and leaves it out.
CONFIGRET WINAPI GetId(DEVINST node, wchar_t* buffer, ULONG length, ULONG flags) {
  return About(node, buffer != nullptr, flags, [&](const Device& device) -> CONFIGRET {
    const std::wstring& id = device.instanceId;
    if (length < id.size()) return CR_BUFFER_SMALL;
    id.copy(buffer, id.size());
    if (length > id.size()) buffer[id.size()] = L'\0';
    return CR_SUCCESS;
  });
}

CONFIGRET WINAPI GetStatus(ULONG* status, ULONG* problem, DEVINST node, ULONG flags) {
  return About(node, status != nullptr && problem != nullptr, flags, [&](const Device& device) -> CONFIGRET {
    if (device.removed || !device.present) return CR_NO_SUCH_DEVNODE;
    *status = (device.started ? DN_DRIVER_LOADED | DN_STARTED : 0) | (device.disabled ? DN_HAS_PROBLEM : 0);
    *problem = device.disabled ? CM_PROB_DISABLED : 0;
    return CR_SUCCESS;
  });
}

CONFIGRET WINAPI Locate(DEVINST* node, DEVINSTID_W id, ULONG flags) {
  MachineLock machine;
  if (node == nullptr) return Reject(machine, "no place for the result", CR_INVALID_POINTER);
  if (id == nullptr || *id == L'\0') {
    *node = machine->Devices().Root().node;
    return CR_SUCCESS;
  }
  const Device* device = machine->Devices().Find(std::wstring_view(id));
  if (device == nullptr || (!device->present && (flags & CM_LOCATE_DEVNODE_PHANTOM) == 0))
    return CR_NO_SUCH_DEVNODE;
  *node = device->node;
  return CR_SUCCESS;
}

CONFIGRET WINAPI Reenumerate(DEVINST node, ULONG) {
  MachineLock machine;
  Device* device = Named(machine, node);
  if (device == nullptr) return Reject(machine, "not a device node", CR_INVALID_DEVNODE);
  if (device->removed) return CR_NO_SUCH_DEVNODE;
  machine->Devices().Reenumerate(*device);
  return CR_SUCCESS;
}

const FunctionRow kRows[] = {
    {"cfgmgr32.dll", KD_SIMULATED(CM_Get_Parent, GetParent), FailsWithStatus(CR_NO_SUCH_DEVNODE)},
    {"cfgmgr32.dll", KD_SIMULATED(CM_Get_Child, GetChild), FailsWithStatus(CR_NO_SUCH_DEVNODE)},
    {"cfgmgr32.dll", KD_SIMULATED(CM_Get_Sibling, GetSibling), FailsWithStatus(CR_NO_SUCH_DEVNODE)},
    {"cfgmgr32.dll", KD_SIMULATED(CM_Get_Device_ID_Size, GetIdSize), FailsWithStatus(CR_INVALID_DEVNODE)},
    {"cfgmgr32.dll", KD_SIMULATED(CM_Get_Device_IDW, GetId), FailsWithStatus(CR_BUFFER_SMALL)},
    {"cfgmgr32.dll", KD_SIMULATED(CM_Get_DevNode_Status, GetStatus), FailsWithStatus(CR_NO_SUCH_DEVNODE)},
    {"cfgmgr32.dll", KD_SIMULATED(CM_Locate_DevNodeW, Locate), FailsWithStatus(CR_NO_SUCH_DEVNODE),
     NoHandle(), 1u << 1},
    {"cfgmgr32.dll", KD_SIMULATED(CM_Reenumerate_DevNode, Reenumerate), FailsWithStatus(CR_ACCESS_DENIED)},
};

}  // namespace

const std::span<const FunctionRow> kDeviceTreeRows = kRows;

}  // namespace workbench
