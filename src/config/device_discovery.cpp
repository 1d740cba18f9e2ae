// How the configuration interface and the parent of a device are found.
#include <cstddef>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <new>

#include "config/parent_device.h"
#include "config/user_mode_config.h"
#include "install/devices/class_installer.h"

static_assert(sizeof(SP_DEVICE_INTERFACE_DATA) == 32);
static_assert(sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W) == 8);
static_assert(sizeof(SP_DEVINFO_DATA) == 32);

namespace {

constexpr wchar_t kReferencePrefix[] = L"kdgendrv_";

// The one trace line of the system: without the list of devices nothing can be configured, and an
// administrator who runs a management program in a console sees why.
bool ReportClassDevsFailure() {
  const DWORD error = GetLastError();
  std::printf("SetupDiGetClassDevs failed: %x\n", static_cast<unsigned>(error));
  std::fflush(stdout);
  return false;
}

CWideString WithoutBackslashes(const CWideString& text) {
  std::wstring result;
  for (const wchar_t *at = text.Text(), *next = nullptr; *at != 0; at = next) {
    next = CharNextW(at);
    if (*at != L'\\') result.append(at, next);
  }
  return CWideString(result);
}

// What follows the last backslash; the whole path when it has none.
CWideString ReferenceOf(const CWideString& path) {
  const std::size_t backslash = path.View().rfind(L'\\');
  return backslash == std::wstring_view::npos ? path : path.Mid(backslash + 1);
}

// The path of an interface that SetupAPI describes in `size` bytes.
bool ReadDetail(HDEVINFO set, SP_DEVICE_INTERFACE_DATA& instance, DWORD size, CWideString& path) {
  using Detail = SP_DEVICE_INTERFACE_DETAIL_DATA_W;
  if (size < sizeof(Detail)) return false;
  const std::unique_ptr<std::byte[]> buffer(new (std::nothrow) std::byte[size]());
  if (!buffer) return false;
  auto* detail = reinterpret_cast<Detail*>(buffer.get());
  detail->cbSize = sizeof(Detail);
  if (!SetupDiGetDeviceInterfaceDetailW(set, &instance, detail, size, nullptr, nullptr)) return false;
  const std::size_t room = (size - offsetof(Detail, DevicePath)) / sizeof(wchar_t);
  path = std::wstring_view(detail->DevicePath, wcsnlen(detail->DevicePath, room));
  return true;
}

}  // namespace

bool CKdSetupDi_DeviceInterface::OpenInterfaces() {
  // A further search abandons the set of the one before instead of destroying it: details that were read
  // from it refer to it.
  static_cast<void>(interfaces_.Release());
  return OpenClassDevices(interfaces_, interfaceClass_, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE) ||
         ReportClassDevsFailure();
}

bool CKdSetupDi_DeviceInterface::ReadPath(DWORD index, CWideString& path) const {
  SP_DEVICE_INTERFACE_DATA instance{};
  instance.cbSize = sizeof(instance);
  if (!SetupDiEnumDeviceInterfaces(interfaces_.Get(), nullptr, &interfaceClass_, index, &instance)) {
    return false;
  }
  DWORD size = 0;
  if (SetupDiGetDeviceInterfaceDetailW(interfaces_.Get(), &instance, nullptr, 0, &size, nullptr) ||
      GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
    return false;
  }
  return ReadDetail(interfaces_.Get(), instance, size, path);
}

CWideString CKdUserModeConfig::ExpectedReference() const {
  CWideString driverKey;
  if (!device_.GetDriverKeyName(driverKey)) return {};
  CWideString reference = CWideString(kReferencePrefix) + WithoutBackslashes(driverKey).View();
  reference.MakeLower();
  return reference;
}

bool CKdUserModeConfig::FindDeviceInterface() {
  path_ = CWideString();
  const CWideString expected = ExpectedReference();
  if (expected.IsEmpty() || !OpenInterfaces()) return false;
  CWideString path;
  for (DWORD index = 0; ReadPath(index, path); ++index) {
    CWideString reference = ReferenceOf(path);
    reference.MakeLower();
    if (reference != expected) continue;
    path_ = path;
    return true;
  }
  return false;
}

bool CKdSetupDi_ParentDevice::FindParentDevice() {
  if (!OpenAllDevices(devices_, DIGCF_PRESENT | DIGCF_ALLCLASSES)) return ReportClassDevsFailure();
  DEVINST parent = 0;
  if (CM_Get_Parent(&parent, child_.DevInst, 0) != CR_SUCCESS) return false;
  parent_ = {};
  parent_.cbSize = sizeof(parent_);
  for (DWORD index = 0; SetupDiEnumDeviceInfo(devices_.Get(), index, &parent_); ++index) {
    if (parent_.DevInst == parent) return true;
  }
  return false;
}
