// rename_port: gives a port another COM name.
//
//   rename_port INSTANCE-ID COMn
//
// Shows how a program links the import library, and how it learns what became of the rename:
// KdChangeComNumber says only whether it found the port, so the name is read afterwards. Written in C++17.
// Exit status: 0 renamed, 1 failed or declined, 2 wrong usage.
#include <kdui10.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

int Usage() {
  std::fputws(
      L"usage: rename_port INSTANCE-ID COMn\n"
      L"  INSTANCE-ID  the port, as in Device Manager under \"Device instance path\"\n"
      L"  COMn         the new name, COM1 to COM255\n",
      stderr);
  return 2;
}

// KdChangeComNumber takes the name as it is, so it is checked here.
bool IsComName(const std::wstring& name) {
  if (name.compare(0, 3, L"COM") != 0 || name.size() < 4 || name.size() > 6 || name[3] == L'0') return false;
  if (name.find_first_not_of(L"0123456789", 3) != std::wstring::npos) return false;
  return std::wcstoul(name.c_str() + 3, nullptr, 10) <= 255;
}

std::wstring ReadText(HKEY key, const wchar_t* name) {
  wchar_t text[150];
  DWORD size = sizeof text;
  const LSTATUS status = RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, text, &size);
  return status == ERROR_SUCCESS ? std::wstring(text) : std::wstring();
}

std::wstring ReadPortName(HDEVINFO set, SP_DEVINFO_DATA& port) {
  const HKEY key = SetupDiOpenDevRegKey(set, &port, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
  if (key == INVALID_HANDLE_VALUE) return {};
  const std::wstring name = ReadText(key, L"PortName");
  RegCloseKey(key);
  return name;
}

// The COM name that a port has now; empty when there is no such port or it has none.
std::wstring PortNameOf(const std::wstring& instanceId) {
  const HDEVINFO set = SetupDiCreateDeviceInfoList(nullptr, nullptr);
  if (set == INVALID_HANDLE_VALUE) return {};
  SP_DEVINFO_DATA port{};
  port.cbSize = sizeof port;
  std::wstring name;
  if (SetupDiOpenDeviceInfoW(set, instanceId.c_str(), nullptr, 0, &port)) name = ReadPortName(set, port);
  SetupDiDestroyDeviceInfoList(set);
  return name;
}

int Rename(const std::wstring& instanceId, const std::wstring& newName) {
  const std::wstring oldName = PortNameOf(instanceId);
  if (!KdChangeComNumber(instanceId.c_str(), newName.c_str())) {
    std::fwprintf(stderr, L"rename_port: there is no port %ls\n", instanceId.c_str());
    return 1;
  }
  if (PortNameOf(instanceId) != newName) {
    std::fwprintf(stderr, L"rename_port: still %ls: declined, or not started as administrator\n",
                  oldName.c_str());
    return 1;
  }
  std::wprintf(L"%ls is now %ls\n", oldName.c_str(), newName.c_str());
  return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 3 || !IsComName(argv[2])) return Usage();
  return Rename(argv[1], argv[2]);
}
