#include "install/devices/device_tree.h"

#include <string>

#include "install/devices/class_installer.h"

bool GetInstanceId(DEVINST node, CWideString& id) {
  ULONG length = 0;
  if (CM_Get_Device_ID_Size(&length, node, 0) != CR_SUCCESS) return false;
  std::wstring buffer(length + 1, L'\0');
  if (CM_Get_Device_IDW(node, buffer.data(), length + 1, 0) != CR_SUCCESS) return false;
  id = CWideString(buffer.c_str());
  return true;
}

std::vector<DEVINST> ChildrenOf(DEVINST node) {
  std::vector<DEVINST> children;
  DEVINST child = 0;
  CONFIGRET result = CM_Get_Child(&child, node, 0);
  // No node is 0. Wine's configuration manager reports success and leaves the node alone; taken for a child,
  // that would be another device, and a child is something that gets removed.
  while (result == CR_SUCCESS && child != 0) {
    children.push_back(child);
    result = CM_Get_Sibling(&child, child, 0);
  }
  return children;
}

CDeviceInfoList CreateEmptyDeviceInfoList() {
  return CDeviceInfoList(SetupDiCreateDeviceInfoList(nullptr, nullptr));
}

bool GetParentInstanceId(const SP_DEVINFO_DATA& child, CWideString& id) {
  DEVINST parent = 0;
  return CM_Get_Parent(&parent, child.DevInst, 0) == CR_SUCCESS && GetInstanceId(parent, id);
}

bool CParentDevice::Open(const SP_DEVINFO_DATA& child) {
  if (!GetParentInstanceId(child, instanceId_)) return false;
  set_ = CreateEmptyDeviceInfoList();
  return set_ && OpenDeviceInfo(set_.Get(), instanceId_.Text(), element_, 0);
}
