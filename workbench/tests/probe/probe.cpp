// A small DLL that reaches the platform through its import table and through what it looks up itself.
#include <windows.h>

#include <setupapi.h>

extern "C" {
#define PROBE __declspec(dllexport)

PROBE FARPROC FindByName(const char* dll, const char* name) {
  return GetProcAddress(LoadLibraryA(dll), name);
}

PROBE LSTATUS OpenKey(const wchar_t* path, HKEY* key) {
  return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, key);
}
PROBE LSTATUS CloseKey(HKEY key) {
  return RegCloseKey(key);
}
PROBE HANDLE OpenPath(const wchar_t* path) {
  return CreateFileW(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED,
                     nullptr);
}
PROBE BOOL ControlWithoutCount(HANDLE file) {
  return DeviceIoControl(file, 1, nullptr, 0, nullptr, 0, nullptr, nullptr);
}
PROBE BOOL CloseFile(HANDLE file) {
  return CloseHandle(file);
}

PROBE HDEVINFO AllDevices(const GUID* classGuid, DWORD flags) {
  return SetupDiGetClassDevsW(classGuid, nullptr, nullptr, flags);
}
PROBE BOOL Destroy(HDEVINFO set) {
  return SetupDiDestroyDeviceInfoList(set);
}
PROBE BOOL Enumerate(HDEVINFO set, DWORD index, SP_DEVINFO_DATA* data) {
  return SetupDiEnumDeviceInfo(set, index, data);
}
PROBE HKEY DeviceKey(HDEVINFO set, SP_DEVINFO_DATA* data, REGSAM access) {
  return SetupDiOpenDevRegKey(set, data, DICS_FLAG_GLOBAL, 0, DIREG_DEV, access);
}
}
