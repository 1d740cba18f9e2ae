#include "install/port_backup.h"

#include <optional>

#include "base/decimal.h"
#include "install/devices/device_tree.h"
#include "install/devices/port_in_use.h"
#include "install/devices/ports_class.h"
#include "install/devices/registry_values.h"
#include "install/install_rules.h"
#include "install/naming/dos_device.h"
#include "install/naming/rename_com_port.h"

namespace {

constexpr wchar_t kPagesKey[] = L"UI1";  // the property pages' own values, below the port's

CWideString DeviceParametersPath(const CWideString& instanceId) {
  return CWideString::Format(L"System\\CurrentControlSet\\Enum\\%s\\Device Parameters", instanceId);
}

void BackupPortValues(HKEY backup, const CWideString& portId) {
  const CRegistryKey port = OpenKey(HKEY_LOCAL_MACHINE, DeviceParametersPath(portId), KEY_READ);
  if (!port) return;
  ForEachValue(port.Get(), [&](const CWideString& name, DWORD type) {
    if (type == REG_DWORD) CopyDword(port.Get(), backup, name);
    if (type == REG_SZ && name == kPortName) CopyString(port.Get(), backup, name);
  });
}

void BackupPagesKey(HKEY backup, const CWideString& portId) {
  const CRegistryKey from =
      OpenKey(HKEY_LOCAL_MACHINE, DeviceParametersPath(portId) + L"\\" + kPagesKey, KEY_READ);
  if (!from) return;
  const CRegistryKey to = CreateKey(backup, kPagesKey);
  if (to) CopyDwordsAndStrings(from.Get(), to.Get());
}

// Writes the saved settings to the port's key; returns the saved name, which is not a setting: a name is
// only ever given by a rename.
std::optional<CWideString> RestorePortValues(HKEY backup, HKEY port) {
  std::optional<CWideString> savedName;
  ForEachValue(backup, [&](const CWideString& name, DWORD type) {
    if (type == REG_DWORD && !IsCapabilityValue(name)) CopyDword(backup, port, name);
    if (type != REG_SZ || name != kPortName) return;
    CWideString text;
    if (ReadString(backup, name, text)) savedName = text;
  });
  return savedName;
}

void ReleaseIfTaken(CCOMPortUtil& port, DWORD number) {
  const CComDatabaseScope database(port);
  if (!port.IsComNumberFree(number)) port.ReleaseComNumber(number);
}

void RestoreName(CCOMPortUtil& port, const CWideString& savedName) {
  CWideString currentName;
  if (!port.GetRegString(kPortName, currentName)) return;
  if (!IsPortOpenable(currentName) && !HasDosDevice(currentName)) return;

  // Usually the port itself still holds the number; the rename is to claim it without a question.
  // Kept on purpose: swapped numbers
  ReleaseIfTaken(port, static_cast<DWORD>(ComNumberOf(savedName.View())));
  RenamePortAsInstaller(port, savedName);
}

void RestorePagesKey(HKEY backup, HKEY port) {
  const CRegistryKey from = OpenKey(backup, kPagesKey, KEY_READ);
  if (!from) return;
  const CRegistryKey to = CreateKey(port, kPagesKey);
  if (to) CopyDwordsAndStrings(from.Get(), to.Get());
}

void DeleteBackup(const CWideString& serverId, const CWideString& backupName) {
  constexpr REGSAM kAccess = KEY_READ | KEY_SET_VALUE;
  static_assert(kAccess == 0x2001B);
  const CRegistryKey server = OpenKey(HKEY_LOCAL_MACHINE, DeviceParametersPath(serverId), kAccess);
  // Fails for a backup with page values below it. Kept on purpose: kept page values
  if (server) DeleteKey(server.Get(), backupName);
}

}  // namespace

void BackupChildPortSettings(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& server) {
  const CDeviceKey serverKey = OpenDeviceKey(deviceInfoSet, server, GENERIC_WRITE);
  if (!serverKey) return;
  for (const DEVINST child : ChildrenOf(server.DevInst)) {
    CWideString portId;
    if (!GetInstanceId(child, portId)) continue;
    const CRegistryKey backup = CreateKey(serverKey.Get(), BackupKeyName(portId));
    if (!backup) continue;
    BackupPortValues(backup.Get(), portId);
    BackupPagesKey(backup.Get(), portId);
  }
}

bool RestorePortSettings(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& port) {
  const CDeviceKey portKey = OpenDeviceKey(deviceInfoSet, port, GENERIC_WRITE);
  CWideString serverId;
  CWideString portId;
  if (!portKey || !GetParentInstanceId(port, serverId) || !GetInstanceId(port.DevInst, portId)) {
    return false;
  }
  const CWideString backupName = BackupKeyName(portId);
  CRegistryKey backup =
      OpenKey(HKEY_LOCAL_MACHINE, DeviceParametersPath(serverId) + L"\\" + backupName.View(), KEY_READ);
  if (!backup) return false;

  if (const auto savedName = RestorePortValues(backup.Get(), portKey.Get())) {
    CCOMPortUtil namedPort(deviceInfoSet, port);
    RestoreName(namedPort, *savedName);
  }
  RestorePagesKey(backup.Get(), portKey.Get());
  backup.Reset();
  DeleteBackup(serverId, backupName);
  return true;
}
