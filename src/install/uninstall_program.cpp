#include "install/uninstall_program.h"

#include <array>

#include "base/unique_handle.h"
#include "install/devices/device_reg_info.h"

static_assert(sizeof(STARTUPINFOW) == 104);

void RunUninstallProgram(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& server, bool wait) {
  constexpr DWORD kMostWaitMs = 60000;
  std::array<wchar_t, MAX_PATH> directory{};
  const UINT length = GetSystemDirectoryW(directory.data(), MAX_PATH);
  if (length == 0 || length >= directory.size()) return;  // never a program of the current directory
  CWideString program;
  if (!ReadDevRegString(deviceInfoSet, server, L"UnInstall", program)) return;
  const CWideString path = CWideString(directory.data()) + L"\\" + program.View();

  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  if (CreateProcessW(path.Text(), nullptr, nullptr, nullptr, TRUE, NORMAL_PRIORITY_CLASS, nullptr, nullptr,
                     &startup, &process) == FALSE) {
    return;
  }
  const CKernelHandle thread(process.hThread);
  if (wait) WaitForSingleObject(process.hProcess, kMostWaitMs);
  // Kept on purpose: open handles
}
