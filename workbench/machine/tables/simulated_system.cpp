// The host's version, its processes and its driver updates.
#include <windows.h>

#include <newdev.h>

#include <algorithm>
#include <sstream>

#include "workbench/machine/tables/tables.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

BOOL WINAPI GetVersionRecord(OSVERSIONINFOW* version) {
  MachineLock machine;
  if (version == nullptr) return FailWith(ERROR_INVALID_PARAMETER);
  const bool extended = version->dwOSVersionInfoSize == sizeof(OSVERSIONINFOEXW);
  if (!extended && version->dwOSVersionInfoSize != sizeof(OSVERSIONINFOW))
    return machine->Calls().Misused("version record of the wrong size", ERROR_INSUFFICIENT_BUFFER);
  const SystemState& system = machine->System();
  const DWORD size = version->dwOSVersionInfoSize;
  std::fill_n(reinterpret_cast<BYTE*>(version), size, BYTE{0});
  version->dwOSVersionInfoSize = size;
  version->dwMajorVersion = system.majorVersion;
  version->dwMinorVersion = system.minorVersion;
  version->dwBuildNumber = system.buildNumber;
  version->dwPlatformId = VER_PLATFORM_WIN32_NT;
  if (extended) reinterpret_cast<OSVERSIONINFOEXW*>(version)->wProductType = VER_NT_WORKSTATION;
  return TRUE;
}

// A program that has ended by the time that its starter looks: its handles are events that are set.
HANDLE EndedObject(MachineLock& machine, HandleKind kind) {
  const HANDLE handle = CreateEventW(nullptr, TRUE, TRUE, nullptr);
  machine->Calls().Opened(kind, Bits(handle));
  return handle;
}

BOOL WINAPI StartProcess(const wchar_t* application, wchar_t*, SECURITY_ATTRIBUTES* process,
                         SECURITY_ATTRIBUTES* thread, BOOL, DWORD, void* environment,
                         const wchar_t* directory, STARTUPINFOW* startup, PROCESS_INFORMATION* result) {
  MachineLock machine;
  if (startup == nullptr || result == nullptr || startup->cb != sizeof *startup)
    return machine->Calls().Misused("STARTUPINFOW missing or of the wrong size", ERROR_INVALID_PARAMETER);
  if (process != nullptr || thread != nullptr) machine->Calls().Note(L"security attributes");
  if (environment != nullptr || directory != nullptr) machine->Calls().Note(L"environment or directory");
  machine->System().processes.emplace_back(application == nullptr ? L"" : application);
  const auto number = static_cast<DWORD>(4000 + 4 * machine->System().processes.size());
  *result = {.hProcess = EndedObject(machine, HandleKind::Process),
             .hThread = EndedObject(machine, HandleKind::Thread),
             .dwProcessId = number,
             .dwThreadId = number + 1};
  return TRUE;
}

bool HasHardwareId(Machine& machine, const Device& device, const std::wstring& wanted) {
  const auto raw = machine.Registry().Raw(EnumKeyOf(device.instanceId), L"HardwareID");
  if (!raw) return false;
  std::wistringstream ids(
      {reinterpret_cast<const wchar_t*>(raw->data.data()), raw->data.size() / sizeof(wchar_t)});
  for (std::wstring id; std::getline(ids, id, L'\0');) {
    if (EqualNoCase(id, wanted)) return true;
  }
  return false;
}

BOOL WINAPI UpdateDriver(HWND owner, const wchar_t* hardwareId, const wchar_t* infPath, DWORD flags,
                         BOOL* reboot) {
  MachineLock machine;
  if (hardwareId == nullptr || infPath == nullptr)
    return machine->Calls().Misused("a text is missing", ERROR_INVALID_PARAMETER);
  machine->System().driverUpdates.push_back(
      {.owner = owner, .hardwareId = hardwareId, .infPath = infPath, .flags = flags});
  if (machine->System().updateError != ERROR_SUCCESS) return FailWith(machine->System().updateError);
  const auto isMeant = [&](const Device* device) { return HasHardwareId(*machine, *device, hardwareId); };
  if (std::ranges::none_of(machine->Devices().All(), isMeant)) return FailWith(ERROR_NO_SUCH_DEVINST);
  if (reboot != nullptr) *reboot = machine->System().updateNeedsReboot ? TRUE : FALSE;
  return TRUE;
}

const FunctionRow kRows[] = {
    {"kernel32.dll", KD_SIMULATED(GetVersionExW, GetVersionRecord), FailsWithZero(ERROR_INSUFFICIENT_BUFFER)},
    {"kernel32.dll", KD_SIMULATED(CreateProcessW, StartProcess), FailsWithZero(ERROR_FILE_NOT_FOUND)},
    {"newdev.dll", KD_SIMULATED(UpdateDriverForPlugAndPlayDevicesW, UpdateDriver),
     FailsWithZero(ERROR_NO_SUCH_DEVINST)},
};

}  // namespace

const std::span<const FunctionRow> kHostRows = kRows;

}  // namespace workbench
