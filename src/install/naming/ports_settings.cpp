#include "install/naming/ports_settings.h"

#include "install/devices/ports_class.h"
#include "install/devices/registry_values.h"

bool WritePortsSettings(const CWideString& comName, const CWideString& settings) {
  const CRegistryKey ports =
      CreateKey(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Ports");
  return ports && WriteString(ports.Get(), comName + L":", settings);
}

void WritePortsDefault(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element) {
  CWideString name;
  if (ReadDevRegString(deviceInfoSet, element, kPortName, name)) WritePortsSettings(name, L"9600,n,8,1");
}

void WritePortsDefault(const CKDDeviceRegInfo& port) {
  WritePortsDefault(port.Set(), port.Element());
}
