#include "install/naming/usb_fixed_name.h"

#include "base/decimal.h"
#include "install/devices/class_installer.h"
#include "install/devices/device_tree.h"
#include "install/devices/ports_class.h"
#include "install/naming/rename_com_port.h"

namespace {

// A device that moves away stays there, so it goes above COM1 to COM4: two of these numbers are models' own
// (COM2, COM4), and the others are those of the computer's own ports.
constexpr std::uint32_t kFirstForMovedHolder = 5;

std::uint32_t NumberForHolder(CCOMPortUtil& port, const CWideString& name, std::uint32_t firstCandidate) {
  const CComDatabaseScope database(port);
  const std::optional<ComUsage> usage = port.ReadComUsage();
  return NumberForMovedHolder(usage ? &*usage : nullptr, firstCandidate, name);
}

bool IsFree(CCOMPortUtil& port, std::int32_t number) {
  const CComDatabaseScope database(port);
  return port.IsComNumberFree(static_cast<DWORD>(number));
}

void TakeFixedName(CCOMPortUtil& port, std::int32_t number) {
  const CWideString name = ComNameOf(number);
  if (!IsFree(port, number)) MoveComNameHolder(port, name, kFirstForMovedHolder);
  RenamePortAsInstaller(port, name);
}

}  // namespace

bool ApplyUsbFixedComName(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element) {
  CParentDevice parent;
  if (!parent.Open(element)) return false;
  CCOMPortUtil port(deviceInfoSet, element);
  CWideString currentName;
  if (!port.GetRegString(kPortName, currentName)) return false;
  const std::optional<std::int32_t> number = FixedComNumber(HardwareIdOf(parent.InstanceId()));
  if (!number) return false;
  if (ComNumberOf(currentName.View()) == *number) return true;
  TakeFixedName(port, *number);
  DisableDevice(parent.Set(), parent.Element());
  EnableDevice(parent.Set(), parent.Element());
  return true;
}

int MoveComNameHolder(CCOMPortUtil& port, const CWideString& name, std::uint32_t firstCandidate) {
  // With DIGCF_ALLCLASSES the class has no effect. Kept on purpose: all classes
  CDeviceInfoList devices;
  if (!OpenClassDevices(devices, kPortsClass, DIGCF_ALLCLASSES)) return 0;
  SP_DEVINFO_DATA element{};
  element.cbSize = sizeof(element);
  for (DWORD index = 0; SetupDiEnumDeviceInfo(devices.Get(), index, &element) != FALSE; ++index) {
    CWideString holderName;
    if (!ReadDevRegString(devices.Get(), element, kPortName, holderName) || holderName != name) continue;
    CCOMPortUtil holder(devices.Get(), element);
    const std::uint32_t number = NumberForHolder(port, name, firstCandidate);
    RenamePortAsInstaller(holder, ComNameOf(static_cast<std::int32_t>(number)));
    return 1;
  }
  return 0;
}
