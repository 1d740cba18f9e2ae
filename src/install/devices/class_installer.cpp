#include "install/devices/class_installer.h"

static_assert(sizeof(SP_DEVINSTALL_PARAMS_W) == 584);
static_assert(sizeof(SP_PROPCHANGE_PARAMS) == 20);

namespace {

bool GetInstallParams(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element, SP_DEVINSTALL_PARAMS_W& params) {
  params = {};
  params.cbSize = sizeof(params);
  return SetupDiGetDeviceInstallParamsW(deviceInfoSet, &element, &params) != FALSE;
}

bool SetPropertyChange(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element, DWORD stateChange, DWORD scope) {
  SP_PROPCHANGE_PARAMS change{};
  change.ClassInstallHeader.cbSize = sizeof(change.ClassInstallHeader);
  change.ClassInstallHeader.InstallFunction = DIF_PROPERTYCHANGE;
  change.StateChange = stateChange;
  change.Scope = scope;
  change.HwProfile = 0;
  return SetupDiSetClassInstallParamsW(deviceInfoSet, &element, &change.ClassInstallHeader, sizeof(change)) !=
         FALSE;
}

int ChangeState(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element, DWORD stateChange) {
  SP_DEVINSTALL_PARAMS_W params;
  // Parameters that could not be read are not written back: that would clear what others have set.
  if (GetInstallParams(deviceInfoSet, element, params)) {
    params.Flags |= DI_PROPERTIES_CHANGE;
    SetupDiSetDeviceInstallParamsW(deviceInfoSet, &element, &params);
  }
  if (!SetPropertyChange(deviceInfoSet, element, stateChange, DICS_FLAG_GLOBAL) &&
      !SetPropertyChange(deviceInfoSet, element, stateChange, DICS_FLAG_CONFIGSPECIFIC)) {
    return 1;
  }
  SetupDiCallClassInstaller(DIF_PROPERTYCHANGE, deviceInfoSet, &element);
  // Read again and not acted on: what the class installer has left there asks for a restart of the computer
  // (DI_NEEDRESTART, DI_NEEDREBOOT), and none is made or asked for from here.
  static_cast<void>(GetInstallParams(deviceInfoSet, element, params));
  return 1;
}

}  // namespace

int DisableDevice(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element) {
  return ChangeState(deviceInfoSet, element, DICS_DISABLE);
}

int EnableDevice(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element) {
  return ChangeState(deviceInfoSet, element, DICS_ENABLE);
}

int MarkPropChangePending(HDEVINFO deviceInfoSet, SP_DEVINFO_DATA& element) {
  SP_DEVINSTALL_PARAMS_W params;
  if (GetInstallParams(deviceInfoSet, element, params)) {
    params.FlagsEx |= DI_FLAGSEX_PROPCHANGE_PENDING;
    SetupDiSetDeviceInstallParamsW(deviceInfoSet, &element, &params);
  }
  return 1;
}

int ReenumerateDevNode(const CWideString& instanceId) {
  std::wstring id(instanceId.View());  // CM_Locate_DevNodeW takes a pointer to writable text
  DEVINST node = 0;
  const CONFIGRET found =
      CM_Locate_DevNodeW(&node, id.empty() ? nullptr : id.data(), CM_LOCATE_DEVNODE_NORMAL);
  return found == CR_SUCCESS && CM_Reenumerate_DevNode(node, 0) == CR_SUCCESS ? 1 : 0;
}

bool OpenAllDevices(CDeviceInfoList& deviceInfoSet, DWORD flags) {
  deviceInfoSet.Reset(SetupDiGetClassDevsW(nullptr, nullptr, nullptr, flags));
  return static_cast<bool>(deviceInfoSet);
}

bool OpenClassDevices(CDeviceInfoList& deviceInfoSet, const GUID& classGuid, DWORD flags) {
  deviceInfoSet.Reset(SetupDiGetClassDevsW(&classGuid, nullptr, nullptr, flags));
  return static_cast<bool>(deviceInfoSet);
}

bool OpenDeviceInfo(HDEVINFO deviceInfoSet, const wchar_t* instanceId, SP_DEVINFO_DATA& element,
                    DWORD flags) {
  element = {};
  element.cbSize = sizeof(element);
  return SetupDiOpenDeviceInfoW(deviceInfoSet, instanceId, nullptr, flags, &element) != FALSE;
}
