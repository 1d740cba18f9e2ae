#include "install/naming/com_port_util.h"

#include <utility>

#include "base/decimal.h"
#include "base/resource_ids.h"
#include "base/unique_handle.h"
#include "install/devices/class_installer.h"
#include "install/devices/device_tree.h"
#include "install/devices/port_in_use.h"
#include "install/naming/dos_device.h"

namespace {

constexpr wchar_t kSerialMapKey[] = L"Hardware\\DeviceMap\\SERIALCOMM";

bool WriteText(HKEY key, const CWideString& value, const CWideString& text) {
  const auto bytes = static_cast<DWORD>((text.Length() + 1) * sizeof(wchar_t));
  return RegSetValueExW(key, value.Text(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.Text()), bytes) ==
         ERROR_SUCCESS;
}

DWORD NumberOf(const CWideString& comName) {
  return static_cast<DWORD>(ComNumberOf(comName.View()));
}

bool UserDeclines(HWND owner, std::uint32_t question) {
  CWideString text;
  text.LoadFromTable(question);
  return MessageBoxW(owner, text.Text(), L"Error", MB_YESNO | MB_ICONINFORMATION) == IDNO;
}

bool MapKernelDevice(const CWideString& kernelPath, const CWideString& comName) {
  CRegistryKey map;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSerialMapKey, 0, KEY_ALL_ACCESS, map.Put()) != ERROR_SUCCESS) {
    return false;
  }
  return WriteText(map.Get(), kernelPath, comName);
}

bool RenameInFriendlyName(const CCOMPortUtil& port, const CWideString& oldName, const CWideString& newName) {
  CWideString friendlyName;
  if (!port.GetFriendlyName(friendlyName)) return false;
  friendlyName.Replace(oldName.View(), newName.View());
  return port.SetFriendlyName(friendlyName);
}

// Keeps the port's COM name database open for a scope, whichever way that is left.
class CComDbScope {
 public:
  explicit CComDbScope(CCOMPortUtil& port) : port_(port) { static_cast<void>(port_.OpenComDb()); }
  ~CComDbScope() { port_.CloseComDb(); }
  CComDbScope(const CComDbScope&) = delete;
  CComDbScope& operator=(const CComDbScope&) = delete;

 private:
  CCOMPortUtil& port_;
};

enum class NameSwitch { Done, Declined, Failed };

// The database and the names that the kernel knows; the port's own values follow afterwards.
NameSwitch SwitchName(CCOMPortUtil& port, const CWideString& parentHardwareId, const CWideString& oldName,
                      const CWideString& newName, HWND owner) {
  const CComDbScope database(port);
  if (!port.IsComNumberFree(NumberOf(newName))) {
    // Also when the number is taken by this very port, that is, when the name does not change.
    if (TakesNumberUnasked(parentHardwareId)) {
      port.ReleaseComNumber(NumberOf(newName));
    } else if (UserDeclines(owner, IDS_COM_NAME_TAKEN)) {
      return NameSwitch::Declined;
    }
  }
  if (RenameDosDeviceAndSerialComm(oldName, newName) == 0) return NameSwitch::Failed;
  BOOL forced = FALSE;
  port.ReleaseComNumber(NumberOf(oldName));
  port.ClaimComNumber(NumberOf(newName), true, &forced);
  return NameSwitch::Done;
}

}  // namespace

CCOMPortUtil::~CCOMPortUtil() {
  CloseComDb();
}

bool CCOMPortUtil::OpenComDb() {
  if (database_ != HCOMDB_INVALID_HANDLE_VALUE) return true;
  HCOMDB opened = HCOMDB_INVALID_HANDLE_VALUE;
  if (ComDBOpen(&opened) != ERROR_SUCCESS) return false;
  database_ = opened;
  return true;
}

bool CCOMPortUtil::CloseComDb() {
  if (database_ == HCOMDB_INVALID_HANDLE_VALUE) return false;
  return ComDBClose(std::exchange(database_, HCOMDB_INVALID_HANDLE_VALUE)) == ERROR_SUCCESS;
}

bool CCOMPortUtil::ClaimComNumber(DWORD number, bool force, BOOL* forced) {
  if (database_ == HCOMDB_INVALID_HANDLE_VALUE) return false;
  BOOL wasForced = FALSE;
  if (ComDBClaimPort(database_, number, force ? TRUE : FALSE, &wasForced) != ERROR_SUCCESS) return false;
  if (forced != nullptr) *forced = wasForced;
  return true;
}

bool CCOMPortUtil::ReleaseComNumber(DWORD number) {
  return database_ != HCOMDB_INVALID_HANDLE_VALUE && ComDBReleasePort(database_, number) == ERROR_SUCCESS;
}

bool CCOMPortUtil::IsComNumberFree(DWORD number) const {
  if (number > kComUsageBytes) return false;
  const std::optional<ComUsage> usage = ReadComUsage();
  return usage && IsNumberFree(*usage, number);
}

std::optional<ComUsage> CCOMPortUtil::ReadComUsage() const {
  return ::ReadComUsage(database_);
}

std::optional<ComUsage> ReadComUsage(HCOMDB database) {
  if (database == HCOMDB_INVALID_HANDLE_VALUE) return std::nullopt;
  ComUsage usage{};
  DWORD reported = 0;
  if (ComDBGetCurrentPortUsage(database, usage.data(), static_cast<DWORD>(usage.size()), CDB_REPORT_BYTES,
                               &reported) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return usage;
}

int RenameDosDeviceAndSerialComm(const CWideString& oldName, const CWideString& newName) {
  CWideString kernelPath;
  if (!ReadDosDevice(oldName, kernelPath)) return 0;
  if (!RemoveDosDevice(oldName, kernelPath)) return 0;
  if (!AddDosDevice(newName, kernelPath)) {
    AddDosDevice(oldName, kernelPath);
    return 0;
  }
  // What the map gets is what the names stand for now; the old one is asked too because an older definition
  // of it may have come up again, and then the new one's answer has to be the last.
  CWideString target;
  static_cast<void>(ReadDosDevice(oldName, target));
  if (ReadDosDevice(newName, target)) kernelPath = target;
  return MapKernelDevice(kernelPath, newName) ? 1 : 0;
}

bool WritePortsSettings(const CWideString& comName, const CWideString& settings) {
  CRegistryKey ports;
  if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Ports", 0,
                      nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE, nullptr, ports.Put(),
                      nullptr) != ERROR_SUCCESS) {
    return false;
  }
  return WriteText(ports.Get(), comName + L":", settings);
}

void WritePortsDefault(HDEVINFO set, const SP_DEVINFO_DATA& element) {
  CWideString name;
  if (ReadDevRegString(set, element, L"PortName", name)) WritePortsSettings(name, L"9600,n,8,1");
}

void WritePortsDefault(const CKDDeviceRegInfo& port) {
  WritePortsDefault(port.Set(), port.Element());
}

int RenameComPort(CCOMPortUtil& port, const CWideString& newName, HWND owner, bool interactive,
                  bool reenumerate) {
  // A parent that cannot be found leaves an empty id, so that a taken number is asked about.
  CParentDevice parent;
  static_cast<void>(parent.Open(port.Element()));
  CWideString oldName;
  if (!port.GetRegString(L"PortName", oldName)) return 0;
  if (interactive && !IsPortOpenable(oldName) && UserDeclines(owner, IDS_PORT_OPEN_RENAME)) return 1;

  const CWideString hardwareId = HardwareIdOf(parent.InstanceId());
  switch (SwitchName(port, hardwareId, oldName, newName, owner)) {
    case NameSwitch::Declined:
      return 1;
    case NameSwitch::Failed:
      return 0;
    case NameSwitch::Done:
      break;
  }
  if (!RenameInFriendlyName(port, oldName, newName)) return 0;
  if (port.SetRegString(L"PortName", newName)) {
    WritePortsDefault(port);
    MarkPropChangePending(port.Set(), *port.ElementPointer());
    if (reenumerate) ReenumerateDevNode(CWideString());
  }
  return 1;
}
