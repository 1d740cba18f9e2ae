// The configuration manager: walking the tree of devices.
#include <windows.h>

#include <cfgmgr32.h>

#include "workbench/machine/models/device_text.h"
#include "workbench/machine/tables/tables.h"

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

// What every question about a node checks first. CR_SUCCESS with the device; otherwise what the caller
// answers.
CONFIGRET Asked(MachineLock& machine, bool hasPlace, DEVINST node, ULONG flags, const Device*& device) {
  if (!hasPlace) return Reject(machine, "no place for the result", CR_INVALID_POINTER);
  if (flags != 0) return Reject(machine, "flags must be 0", CR_INVALID_FLAG);
  device = Named(machine, node);
  if (device == nullptr) return Reject(machine, "not a device node", CR_INVALID_DEVNODE);
  return CR_SUCCESS;
}

CONFIGRET WINAPI GetParent(DEVINST* parent, DEVINST node, ULONG flags) {
  MachineLock machine;
  const Device* device = nullptr;
  const CONFIGRET asked = Asked(machine, parent != nullptr, node, flags, device);
  if (asked != CR_SUCCESS) return asked;
  if (device->removed || device->parent == nullptr) return CR_NO_SUCH_DEVNODE;
  *parent = device->parent->node;
  return CR_SUCCESS;
}

CONFIGRET WINAPI GetChild(DEVINST* child, DEVINST node, ULONG flags) {
  MachineLock machine;
  const Device* device = nullptr;
  const CONFIGRET asked = Asked(machine, child != nullptr, node, flags, device);
  if (asked != CR_SUCCESS) return asked;
  for (const Device* one : device->children) {
    if (one->removed || !one->present) continue;
    *child = one->node;
    return CR_SUCCESS;
  }
  return CR_NO_SUCH_DEVNODE;
}

// A removed device's node lingers until its bus enumerates again: the walk over the children may remove
// the one that it stands on.
CONFIGRET WINAPI GetSibling(DEVINST* sibling, DEVINST node, ULONG flags) {
  MachineLock machine;
  const Device* device = nullptr;
  const CONFIGRET asked = Asked(machine, sibling != nullptr, node, flags, device);
  if (asked != CR_SUCCESS) return asked;
  if (device->parent == nullptr) return CR_NO_SUCH_DEVNODE;
  bool behind = false;
  for (const Device* one : device->parent->children) {
    if (behind && !one->removed && one->present) {
      *sibling = one->node;
      return CR_SUCCESS;
    }
    behind = behind || one == device;
  }
  return CR_NO_SUCH_DEVNODE;
}

CONFIGRET WINAPI GetIdSize(ULONG* length, DEVINST node, ULONG flags) {
  MachineLock machine;
  const Device* device = nullptr;
  const CONFIGRET asked = Asked(machine, length != nullptr, node, flags, device);
  if (asked != CR_SUCCESS) return asked;
  *length = static_cast<ULONG>(device->instanceId.size());  // without the terminator
  return CR_SUCCESS;
}

CONFIGRET WINAPI GetId(DEVINST node, wchar_t* buffer, ULONG length, ULONG flags) {
  MachineLock machine;
  const Device* device = nullptr;
  const CONFIGRET asked = Asked(machine, buffer != nullptr, node, flags, device);
  if (asked != CR_SUCCESS) return asked;
  // Windows fills a buffer that has no room for the terminator, and leaves it out.
  const std::wstring& id = device->instanceId;
  if (length < id.size()) return CR_BUFFER_SMALL;
  id.copy(buffer, id.size());
  if (length > id.size()) buffer[id.size()] = L'\0';
  return CR_SUCCESS;
}

CONFIGRET WINAPI GetStatus(ULONG* status, ULONG* problem, DEVINST node, ULONG flags) {
  MachineLock machine;
  const Device* device = nullptr;
  const CONFIGRET asked = Asked(machine, status != nullptr && problem != nullptr, node, flags, device);
  if (asked != CR_SUCCESS) return asked;
  if (device->removed || !device->present) return CR_NO_SUCH_DEVNODE;
  *status = 0;
  *problem = 0;
  if (device->started) *status |= DN_DRIVER_LOADED | DN_STARTED;
  if (device->disabled) {
    *status |= DN_HAS_PROBLEM;
    *problem = CM_PROB_DISABLED;
  }
  return CR_SUCCESS;
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

CONFIGRET WINAPI Reenumerate(DEVINST node, ULONG flags) {
  MachineLock machine;
  (void)flags;
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
    {.dll = "cfgmgr32.dll",
     .name = "CM_Locate_DevNodeW",
     .hook = reinterpret_cast<AnyFunction>(
         &SimulatedThunk<"CM_Locate_DevNodeW", &Locate, decltype(::CM_Locate_DevNodeW)>::Call),
     .simulated = true,
     .failure = FailsWithStatus(CR_NO_SUCH_DEVNODE),
     .inputTexts = 1u << 1},
    {"cfgmgr32.dll", KD_SIMULATED(CM_Reenumerate_DevNode, Reenumerate), FailsWithStatus(CR_ACCESS_DENIED)},
};

}  // namespace

std::span<const FunctionRow> DeviceTreeRows() {
  return kRows;
}

}  // namespace workbench
