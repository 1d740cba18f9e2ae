#include "install/naming/serial_map.h"

#include "install/devices/registry_values.h"

bool MapKernelDevice(const CWideString& kernelPath, const CWideString& comName) {
  const CRegistryKey map = OpenKey(HKEY_LOCAL_MACHINE, L"Hardware\\DeviceMap\\SERIALCOMM", KEY_ALL_ACCESS);
  return map && WriteString(map.Get(), kernelPath, comName);
}
