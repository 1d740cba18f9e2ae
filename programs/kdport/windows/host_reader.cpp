#include "kdport/windows/host_reader.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>

#include "config/driver_channel.h"
#include "config/user_mode_config.h"
#include "install/devices/class_installer.h"
#include "install/devices/device_tree.h"
#include "install/devices/port_in_use.h"
#include "install/devices/ports_class.h"
#include "install/devices/registry_values.h"
#include "install/naming/com_database.h"
#include "install/naming/dos_device.h"
#include "kdport/model/parameters.h"
#include "kdport/windows/text.h"

namespace KdPort {

namespace {

// All instances of the drivers' configuration interface, also those of devices that are not present: a device
// that has one is the product's.
class CInterfaceIndex : public CKdSetupDi_DeviceInterface {
 public:
  CInterfaceIndex() : CKdSetupDi_DeviceInterface(kConfigurationInterfaceClass) {}

  [[nodiscard]] bool Read() {
    if (!OpenInterfaces(0)) return false;
    CWideString path;
    for (DWORD index = 0; ReadPath(index, path); ++index) paths_[Utf8(ReferenceOfPath(path))] = path;
    return GetLastError() == ERROR_NO_MORE_ITEMS;
  }
  // Null for a reference of a device of somebody else.
  [[nodiscard]] const CWideString* Find(const CWideString& reference) const {
    const auto found = paths_.find(Utf8(reference));
    return found != paths_.end() ? &found->second : nullptr;
  }

 private:
  std::map<std::string, CWideString> paths_;  // by reference
};

using SerialMap = std::map<std::string, std::string>;  // kernel device to COM name

SerialMap ReadSerialMap() {
  SerialMap entries;
  const CRegistryKey map = OpenKey(HKEY_LOCAL_MACHINE, L"Hardware\\DeviceMap\\SERIALCOMM", KEY_READ);
  if (!map) return entries;
  ForEachValue(map.Get(), [&](const CWideString& kernelDevice, DWORD) {
    CWideString name;
    if (ReadString(map.Get(), kernelDevice, name)) entries[Utf8(kernelDevice)] = Utf8(name);
  });
  return entries;
}

class CHostReader {
 public:
  CHostReader(Host& host, std::map<std::string, CWideString>& interfaces)
      : host_(host), interfaces_(interfaces) {}

  [[nodiscard]] Outcome Read();

 private:
  void ReadDosDevices();
  [[nodiscard]] bool ReadDevices();
  void ReadDevice(HDEVINFO devices, SP_DEVINFO_DATA& element);
  void ReadPort(HDEVINFO devices, const SP_DEVINFO_DATA& element, const CWideString& path, Port port);
  void ReadDriver(const CWideString& path, Port& port) const;
  void CompletePort(Port& port);
  void FindOrphans();
  [[nodiscard]] std::string KernelDeviceOf(const std::string& name) const;
  [[nodiscard]] std::string TargetOf(const std::string& name) const {
    return dosDevices_[static_cast<std::size_t>(ComNumber(name))];
  }

  Host& host_;
  std::map<std::string, CWideString>& interfaces_;
  CInterfaceIndex index_;
  SerialMap serialMap_;
  std::array<std::string, kHighestNumber + 1> dosDevices_;  // by number; empty: no such DOS device
  std::set<std::string> presentNames_;
  DWORD unread_ = ERROR_SUCCESS;  // why it cannot be said whose a device is; one without a driver is nobody's
};

Outcome CHostReader::Read() {
  host_ = Host();
  interfaces_.clear();
  if (!index_.Read()) return {Outcome::Failed, "their interfaces: " + ErrorWords(GetLastError())};
  serialMap_ = ReadSerialMap();
  ReadDosDevices();
  if (!ReadDevices()) return {Outcome::Failed, "the list of devices: " + ErrorWords(GetLastError())};
  if (unread_ != ERROR_SUCCESS) return {Outcome::Failed, "the driver of a device: " + ErrorWords(unread_)};
  for (Port& port : host_.ports) CompletePort(port);
  for (ForeignDevice& device : host_.foreign) {
    if (device.present) device.kernelDevice = TargetOf(device.name);
  }
  FindOrphans();
  std::ranges::sort(host_.ports, {}, [](const Port& port) { return std::tuple(port.server, port.index); });
  host_.claimed = ReadComUsage(OpenComDatabase().Get());
  return {};
}

void CHostReader::ReadDosDevices() {
  for (std::int32_t number = 1; number <= kHighestNumber; ++number) {
    CWideString target;
    if (!ReadDosDevice(ComNameOf(number), target)) continue;
    dosDevices_[static_cast<std::size_t>(number)] = Utf8(target);
  }
}

bool CHostReader::ReadDevices() {
  CDeviceInfoList devices;
  if (!OpenAllDevices(devices, DIGCF_ALLCLASSES)) return false;
  SP_DEVINFO_DATA element{};
  element.cbSize = sizeof element;
  for (DWORD i = 0; SetupDiEnumDeviceInfo(devices.Get(), i, &element); ++i)
    ReadDevice(devices.Get(), element);
  return GetLastError() == ERROR_NO_MORE_ITEMS;
}

void CHostReader::ReadDevice(HDEVINFO devices, SP_DEVINFO_DATA& element) {
  CWideString name;
  const bool isNamed = ReadDevRegString(devices, element, kPortName, name);
  if (!isNamed && !IsEqualGUID(element.ClassGuid, kPortsClass)) return;
  const CKDDeviceRegInfo device(devices, element);
  const CWideString reference = ConfigurationReference(device);
  if (reference.IsEmpty() && GetLastError() != ERROR_INVALID_DATA) unread_ = GetLastError();
  CWideString id, text;
  static_cast<void>(GetInstanceId(element.DevInst, id));
  ULONG status = 0, problem = 0;
  const bool present = CM_Get_DevNode_Status(&status, &problem, element.DevInst, 0) == CR_SUCCESS;
  static_cast<void>(device.GetFriendlyName(text));
  if (const CWideString* path = index_.Find(reference)) {
    Port port;
    port.instanceId = Utf8(id);
    port.name = Utf8(name);
    port.friendlyName = Utf8(text);
    port.present = present;
    ReadPort(devices, element, *path, std::move(port));
  } else if (ComNumber(Utf8(name)) != 0) {
    if (text.IsEmpty()) static_cast<void>(device.GetDeviceRegistryString(SPDRP_DEVICEDESC, text));
    host_.foreign.push_back({Utf8(id), Utf8(text), Utf8(name), present, {}});
  }
  if (present) presentNames_.insert(Folded(Utf8(name)));
}

void CHostReader::ReadPort(HDEVINFO devices, const SP_DEVINFO_DATA& element, const CWideString& path,
                           Port port) {
  CWideString server;
  port.server = GetParentInstanceId(element, server) ? Utf8(server) : "unknown";
  static_cast<void>(ReadDevRegDword(devices, element, L"SerialPortIndex", port.index));
  if (port.present) ReadDriver(path, port);
  interfaces_[port.instanceId] = path;
  host_.ports.push_back(std::move(port));
}

void CHostReader::ReadDriver(const CWideString& path, Port& port) const {
  CKdUVcpUserModeInterface set;
  CKdNBusUserModeInterface bus;
  const bool hasSet = ReadCurrentSet(path, set, set.kSelector);
  const bool hasBus = ReadCurrentSet(path, bus, bus.kSelector);
  port.values = FieldsOf(hasSet ? &set : nullptr, hasBus ? &bus : nullptr);
  if (hasSet) port.lowestBaud = set.MinBaudRate, port.highestBaud = set.MaxBaudRate;
  if (hasBus) port.index = bus.SerialPortIndex;
}

void CHostReader::CompletePort(Port& port) {
  if (!port.present || port.Number() == 0) return;
  const std::string target = TargetOf(port.name);
  port.kernelDevice = KernelDeviceOf(port.name);
  if (!target.empty()) port.dosTarget = target;
  const auto mapped = serialMap_.find(port.kernelDevice);
  if (mapped != serialMap_.end()) port.mapName = mapped->second;
  const bool leadsHere = !target.empty() && target == port.kernelDevice;
  port.open = leadsHere && !IsPortOpenable(Wide(port.name));
}

// Windows names no port's kernel device. The serial map's word counts first, which the port's driver wrote;
// then that of the DOS device, unless it is another device's.
std::string CHostReader::KernelDeviceOf(const std::string& name) const {
  std::string byMap;
  for (const auto& [kernelDevice, mapped] : serialMap_) {
    if (Folded(mapped) != Folded(name)) continue;
    if (!byMap.empty()) return {};
    byMap = kernelDevice;
  }
  if (!byMap.empty()) return byMap;
  const std::string target = TargetOf(name);
  const auto mapped = serialMap_.find(target);
  const bool isAnothers = mapped != serialMap_.end() && TargetOf(mapped->second) == target &&
                          presentNames_.contains(Folded(mapped->second));
  return isAnothers ? std::string() : target;
}

// DOS devices with a COM name that no present device has. Those that lead to a port of the product are what
// an interrupted rename left, and hold nothing.
void CHostReader::FindOrphans() {
  for (std::int32_t number = 1; number <= kHighestNumber; ++number) {
    const std::string& target = dosDevices_[static_cast<std::size_t>(number)];
    if (target.empty() || presentNames_.contains(ComName(number))) continue;
    if (std::ranges::find(host_.ports, target, &Port::kernelDevice) != host_.ports.end()) continue;
    host_.foreign.push_back({{}, "the DOS device of " + target, ComName(number), true, target});
  }
}

}  // namespace

Outcome ReadWindowsHost(Host& host, std::map<std::string, CWideString>& interfaces) {
  return CHostReader(host, interfaces).Read();
}

}  // namespace KdPort
