#include "kdport/windows/open_device.h"

#include "install/devices/class_installer.h"
#include "install/devices/device_tree.h"
#include "kdport/windows/text.h"

namespace KdPort {

Outcome COpenDevice::Open(const std::string& instanceId) {
  devices_ = CreateEmptyDeviceInfoList();
  if (!devices_) return {Outcome::Failed, "a list of devices: " + ErrorWords(GetLastError())};
  if (!OpenDeviceInfo(devices_.Get(), Wide(instanceId).c_str(), element_, 0)) {
    const DWORD error = GetLastError();
    if (error == ERROR_NO_SUCH_DEVINST) return {Outcome::Gone, {}};
    return {Outcome::Failed, "the device: " + ErrorWords(error)};
  }
  ULONG status = 0, problem = 0;
  const bool present = CM_Get_DevNode_Status(&status, &problem, element_.DevInst, 0) == CR_SUCCESS;
  return {present ? Outcome::Done : Outcome::Gone, {}};
}

bool COpenDevice::IsStarted() const {
  ULONG status = 0, problem = 0;
  return CM_Get_DevNode_Status(&status, &problem, element_.DevInst, 0) == CR_SUCCESS &&
         (status & DN_STARTED) != 0;
}

}  // namespace KdPort
