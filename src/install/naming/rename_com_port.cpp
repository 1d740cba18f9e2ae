#include "install/naming/rename_com_port.h"

#include "base/decimal.h"
#include "base/resource_ids.h"
#include "install/devices/class_installer.h"
#include "install/devices/device_tree.h"
#include "install/devices/port_in_use.h"
#include "install/devices/ports_class.h"
#include "install/naming/dos_device.h"
#include "install/naming/ports_settings.h"
#include "install/naming/serial_map.h"

namespace {

DWORD NumberOf(const CWideString& comName) {
  return static_cast<DWORD>(ComNumberOf(comName.View()));
}

// What may be asked: nothing, whether to take a taken number, and whether to rename an open port as well.
enum class Questions { None, Taken, TakenAndOpen };

bool UserDeclines(HWND owner, std::uint32_t question) {
  CWideString text;
  text.LoadFromTable(question);
  return MessageBoxW(owner, text.Text(), L"Error", MB_YESNO | MB_ICONINFORMATION) == IDNO;
}

bool RenameInFriendlyName(const CCOMPortUtil& port, const CWideString& oldName, const CWideString& newName) {
  CWideString friendlyName;
  if (!port.GetFriendlyName(friendlyName)) return false;
  friendlyName.Replace(oldName.View(), newName.View());
  return port.SetFriendlyName(friendlyName);
}

enum class NameSwitch { Done, Declined, Failed };

// The database and the names that the kernel knows; the port's own values follow afterwards.
NameSwitch SwitchName(CCOMPortUtil& port, const CWideString& parentHardwareId, const CWideString& oldName,
                      const CWideString& newName, HWND owner, Questions questions) {
  const CComDatabaseScope database(port);
  if (!port.IsComNumberFree(NumberOf(newName))) {
    if (questions == Questions::None) return NameSwitch::Failed;
    // Kept on purpose: own name asks
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

int Rename(CCOMPortUtil& port, const CWideString& newName, HWND owner, Questions questions,
           bool reenumerate) {
  // A parent that cannot be found leaves an empty id, so that a taken number is asked about.
  CParentDevice parent;
  static_cast<void>(parent.Open(port.Element()));
  CWideString oldName;
  if (!port.GetRegString(kPortName, oldName)) return 0;
  if (questions == Questions::TakenAndOpen && !IsPortOpenable(oldName) &&
      UserDeclines(owner, IDS_PORT_OPEN_RENAME)) {
    return 1;
  }

  const CWideString hardwareId = HardwareIdOf(parent.InstanceId());
  switch (SwitchName(port, hardwareId, oldName, newName, owner, questions)) {
    case NameSwitch::Declined:
      return 1;
    case NameSwitch::Failed:
      return 0;
    case NameSwitch::Done:
      break;
  }
  if (!RenameInFriendlyName(port, oldName, newName)) return 0;
  if (port.SetRegString(kPortName, newName)) {
    WritePortsDefault(port);
    MarkPropChangePending(port.Set(), *port.ElementPointer());
    if (reenumerate) ReenumerateDevNode(CWideString());
  }
  return 1;
}

}  // namespace

int RenameDosDeviceAndSerialComm(const CWideString& oldName, const CWideString& newName) {
  CWideString kernelPath;
  if (!ReadDosDevice(oldName, kernelPath)) return 0;
  if (!RemoveDosDevice(oldName, kernelPath)) return 0;
  if (!AddDosDevice(newName, kernelPath)) {
    AddDosDevice(oldName, kernelPath);
    return 0;
  }
  // The map gets what the names stand for now. The new name is asked last: an older definition of the old
  // one may be in force again.
  CWideString target;
  static_cast<void>(ReadDosDevice(oldName, target));
  if (ReadDosDevice(newName, target)) kernelPath = target;
  return MapKernelDevice(kernelPath, newName) ? 1 : 0;
}

int RenameComPort(CCOMPortUtil& port, const CWideString& newName, HWND owner, bool interactive,
                  bool reenumerate) {
  return Rename(port, newName, owner, interactive ? Questions::TakenAndOpen : Questions::Taken, reenumerate);
}

int RenameComPortUnasked(CCOMPortUtil& port, const CWideString& newName) {
  return Rename(port, newName, nullptr, Questions::None, false);
}
