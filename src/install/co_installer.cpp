#include "install/co_installer.h"

#include "base/export_guard.h"
#include "base/resource_ids.h"
#include "install/devices/class_installer.h"
#include "install/devices/device_tree.h"
#include "install/devices/ports_class.h"
#include "install/install_rules.h"
#include "install/naming/child_port_names.h"
#include "install/naming/dos_device.h"
#include "install/naming/ports_settings.h"
#include "install/naming/usb_fixed_name.h"
#include "install/port_backup.h"
#include "install/uninstall_program.h"

static_assert(sizeof(OSVERSIONINFOEXW) == 284);

namespace {

constexpr wchar_t kInstallMutexName[] = L"{5C0E2A71-93B4-4F6D-A8E2-0B7D41C9E356}";

// One step; whatever escapes it ends it, and the installation goes on.
template <class Step>
void BestEffort(Step&& step) noexcept {
  static_cast<void>(GuardBoundary(false, [&] {
    step();
    return true;
  }));
}

// Holds the mutex that the post-installations of all ports share, in all processes. An installer loads and
// frees this DLL for every function, and the mutex lives on between them. Kept on purpose: open handles
class CInstallLock {
 public:
  CInstallLock() noexcept : mutex_(CreateMutexW(nullptr, FALSE, kInstallMutexName)) {
    const DWORD result = mutex_ != nullptr ? WaitForSingleObject(mutex_, INFINITE) : WAIT_FAILED;
    owned_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
  }
  ~CInstallLock() {
    if (owned_) ReleaseMutex(mutex_);
  }
  CInstallLock(const CInstallLock&) = delete;
  CInstallLock& operator=(const CInstallLock&) = delete;

 private:
  HANDLE mutex_;
  bool owned_ = false;
};

void RemoveChildPorts(const SP_DEVINFO_DATA& server) {
  const CDeviceInfoList deviceInfoSet = CreateEmptyDeviceInfoList();
  if (!deviceInfoSet) return;
  for (const DEVINST child : ChildrenOf(server.DevInst)) {
    CWideString id;
    SP_DEVINFO_DATA element;
    if (!GetInstanceId(child, id) || !OpenDeviceInfo(deviceInfoSet.Get(), id.Text(), element, 0)) continue;
    CCOMPortUtil port(deviceInfoSet.Get(), element);
    ReleasePortName(port);
    SetupDiCallClassInstaller(DIF_REMOVE, deviceInfoSet.Get(), &element);
  }
}

DWORD CheckDriverUpdate(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& device) {
  CWideString noUpgrade;
  if (!ReadDevRegString(deviceInfoSet, device, L"NoUpgrade", noUpgrade) || !ForbidsDriverUpdate(noUpgrade)) {
    return NO_ERROR;
  }
  CWideString text;
  text.LoadFromTable(IDS_UPDATE_CARD_DRIVER);
  MessageBoxW(nullptr, text.Text(), L"Veltranet", MB_OK | MB_ICONERROR);
  return ERROR_DI_DONT_INSTALL;
}

bool WindowsSortsPortNames() {
  OSVERSIONINFOEXW version{};
  version.dwOSVersionInfoSize = sizeof(version);
  return GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&version)) != FALSE &&
         SortsPortNames(version.dwMajorVersion, version.dwMinorVersion);
}

DWORD InstallDeviceServer(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& server,
                          const COINSTALLER_CONTEXT_DATA& context) {
  if (context.PostProcessing != FALSE) {
    // Again: the class installer may have started the server, and with it its ports, between the passes.
    // Kept on purpose: one backup
    BestEffort([&] { RemoveChildPorts(server); });
    return context.InstallResult;
  }
  // Throws when memory runs out: ports whose settings are not saved must not be removed. The export then
  // returns NO_ERROR, and the installer leaves out the second pass, which would remove them too.
  BackupChildPortSettings(deviceInfoSet, server);
  BestEffort([&] { RemoveChildPorts(server); });
  return ERROR_DI_POSTPROCESSING_REQUIRED;
}

// A port whose name is not defined yet is left alone: its driver is not running, and a rename needs the
// kernel device that the name leads to.
bool HasDefinedName(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& port) {
  return GuardBoundary(false, [&] {
    CWideString name;
    static_cast<void>(ReadDevRegString(deviceInfoSet, port, kPortName, name));
    return HasDosDevice(name);
  });
}

DWORD InstallPort(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& port,
                  const COINSTALLER_CONTEXT_DATA& context) {
  if (context.PostProcessing == FALSE) return ERROR_DI_POSTPROCESSING_REQUIRED;
  if (!HasDefinedName(deviceInfoSet, port)) return NO_ERROR;
  const CInstallLock lock;
  // Kept on purpose: unanswered question
  const bool restored = GuardBoundary(false, [&] { return RestorePortSettings(deviceInfoSet, port); });
  if (!restored) {
    BestEffort([&] {
      if (WindowsSortsPortNames()) SortChildPortNames(deviceInfoSet, port);
    });
    BestEffort([&] { WritePortsDefault(deviceInfoSet, port); });
  }
  BestEffort([&] { ApplyUsbFixedComName(deviceInfoSet, port); });
  return context.InstallResult;
}

}  // namespace

DWORD CoInstallDeviceServer(DI_FUNCTION function, HDEVINFO deviceInfoSet, SP_DEVINFO_DATA* device,
                            const COINSTALLER_CONTEXT_DATA* context) {
  if (device == nullptr) return NO_ERROR;
  switch (function) {
    case DIF_INSTALLDEVICE:
      return context != nullptr ? InstallDeviceServer(deviceInfoSet, *device, *context) : NO_ERROR;
    case DIF_REMOVE:
      BestEffort([&] { RunUninstallProgram(deviceInfoSet, *device, false); });
      return NO_ERROR;
    case DIF_UPDATEDRIVER_UI:
      return CheckDriverUpdate(deviceInfoSet, *device);
    default:
      return NO_ERROR;
  }
}

DWORD CoInstallPort(DI_FUNCTION function, HDEVINFO deviceInfoSet, SP_DEVINFO_DATA* device,
                    const COINSTALLER_CONTEXT_DATA* context) {
  if (device == nullptr) return NO_ERROR;
  switch (function) {
    case DIF_INSTALLDEVICE:
      return context != nullptr ? InstallPort(deviceInfoSet, *device, *context) : NO_ERROR;
    case DIF_REMOVE:
      BestEffort([&] {
        CCOMPortUtil port(deviceInfoSet, *device);
        ReleasePortName(port);
      });
      return NO_ERROR;
    case DIF_UPDATEDRIVER_UI:
      return CheckDriverUpdate(deviceInfoSet, *device);
    default:
      return NO_ERROR;
  }
}
