#include "install/naming/usb_fixed_name.h"

#include "base/decimal.h"
#include "install/devices/class_installer.h"
#include "install/devices/device_tree.h"

namespace {

constexpr wchar_t kPortName[] = L"PortName";
// A device that moves away stays there, so it goes above COM1 to COM4: two of these numbers are models' own
// (COM2, COM4), and the others are those of the computer's own ports.
constexpr std::uint32_t kFirstForMovedHolder = 5;
constexpr GUID kPortsClass = {0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};

std::uint32_t NumberForHolder(CCOMPortUtil& port, const CWideString& name, std::uint32_t firstCandidate) {
  static_cast<void>(port.OpenComDb());
  const std::optional<ComUsage> usage = port.ReadComUsage();
  port.CloseComDb();
  return NumberForMovedHolder(usage ? &*usage : nullptr, firstCandidate, name);
}

void TakeFixedName(CCOMPortUtil& port, std::int32_t number) {
  const CWideString name = ComNameOf(number);
  static_cast<void>(port.OpenComDb());
  const bool free = port.IsComNumberFree(static_cast<DWORD>(number));
  port.CloseComDb();
  if (!free) MoveComNameHolder(port, name, kFirstForMovedHolder);
  RenameComPort(port, name, nullptr, false, false);
}

}  // namespace

bool ApplyUsbFixedComName(HDEVINFO set, const SP_DEVINFO_DATA& element) {
  CParentDevice parent;
  if (!parent.Open(element)) return false;
  CCOMPortUtil port(set, element);
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
  // With DIGCF_ALLCLASSES the class has no effect and the scan goes through every installed device. That is
  // wanted, because modems and others outside the Ports class have COM names too.
  CDeviceInfoList devices;
  if (!OpenClassDevices(devices, kPortsClass, DIGCF_ALLCLASSES)) return 0;
  SP_DEVINFO_DATA element{};
  element.cbSize = sizeof(element);
  for (DWORD index = 0; SetupDiEnumDeviceInfo(devices.Get(), index, &element) != FALSE; ++index) {
    CWideString holderName;
    if (!ReadDevRegString(devices.Get(), element, kPortName, holderName) || holderName != name) continue;
    CCOMPortUtil holder(devices.Get(), element);
    const std::uint32_t number = NumberForHolder(port, name, firstCandidate);
    RenameComPort(holder, ComNameOf(static_cast<std::int32_t>(number)), nullptr, false, false);
    return 1;
  }
  return 0;
}
