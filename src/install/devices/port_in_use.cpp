#include "install/devices/port_in_use.h"

#include <windows.h>

#include "base/unique_handle.h"

bool IsPortOpenable(const CWideString& comName) {
  const CWideString path = CWideString(L"\\\\.\\") + comName.View();
  const CFileHandle port(CreateFileW(path.Text(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_OVERLAPPED, nullptr));
  return static_cast<bool>(port);
}
