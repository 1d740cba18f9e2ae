#include "config/device_interface.h"

#include <cstddef>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <new>

#include "install/devices/class_installer.h"

static_assert(sizeof(SP_DEVICE_INTERFACE_DATA) == 32);
static_assert(sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W) == 8);

namespace {

// The path of an interface that SetupAPI describes in `size` bytes.
bool ReadDetail(HDEVINFO deviceInfoSet, SP_DEVICE_INTERFACE_DATA& instance, DWORD size, CWideString& path) {
  using Detail = SP_DEVICE_INTERFACE_DETAIL_DATA_W;
  if (size < sizeof(Detail)) return false;
  const std::unique_ptr<std::byte[]> buffer(new (std::nothrow) std::byte[size]());
  if (!buffer) return false;
  auto* detail = reinterpret_cast<Detail*>(buffer.get());
  detail->cbSize = sizeof(Detail);
  if (!SetupDiGetDeviceInterfaceDetailW(deviceInfoSet, &instance, detail, size, nullptr, nullptr)) {
    return false;
  }
  const std::size_t room = (size - offsetof(Detail, DevicePath)) / sizeof(wchar_t);
  path = std::wstring_view(detail->DevicePath, wcsnlen(detail->DevicePath, room));
  return true;
}

}  // namespace

void ReportClassDevsFailure() {
  const DWORD error = GetLastError();
  std::printf("SetupDiGetClassDevs failed: %x\n", static_cast<unsigned>(error));
  std::fflush(stdout);
}

bool CKdSetupDi_DeviceInterface::OpenInterfaces(DWORD flags) {
  // Kept on purpose: second search
  static_cast<void>(interfaces_.Release());
  if (OpenClassDevices(interfaces_, interfaceClass_, flags | DIGCF_DEVICEINTERFACE)) return true;
  ReportClassDevsFailure();
  return false;
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
