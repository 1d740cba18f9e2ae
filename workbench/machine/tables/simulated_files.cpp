// Files, drivers and COM ports.
#include "workbench/machine/tables/tables.h"

namespace workbench {
namespace {

HANDLE WINAPI Create(const wchar_t* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                     DWORD disposition, DWORD flags, HANDLE model) {
  if (path != nullptr) {
    MachineLock machine;
    bool handled = false;
    const HANDLE handle = machine->Files().Open({.path = path,
                                                 .access = access,
                                                 .share = share,
                                                 .disposition = disposition,
                                                 .flags = flags,
                                                 .hasSecurity = security != nullptr,
                                                 .hasTemplate = model != nullptr},
                                                handled);
    if (handled) return handle;
  }
  const HANDLE handle = ::CreateFileW(path, access, share, security, disposition, flags, model);
  const CLastErrorKeeper keeper;
  if (handle != INVALID_HANDLE_VALUE) Gate::Current()->Opened(HandleKind::File, Bits(handle));
  return handle;
}

void NoteRequest(MachineLock& machine, DWORD code, const void* input, DWORD inputSize) {
  wchar_t text[64];
  const auto* words = static_cast<const DWORD*>(input);
  swprintf(text, 64, L"code 0x%08lX selector %lu", code, input != nullptr && inputSize >= 4 ? words[0] : 0);
  machine->Calls().Note(text);
}

BOOL WINAPI Control(HANDLE handle, DWORD code, void* input, DWORD inputSize, void* output, DWORD outputSize,
                    DWORD* returned, OVERLAPPED* overlapped) {
  {
    MachineLock machine;
    NoteRequest(machine, code, input, inputSize);
    if (returned == nullptr && overlapped == nullptr)
      return machine->Calls().Misused("no place for the byte count: Windows would crash",
                                      ERROR_INVALID_PARAMETER);
    if (machine->Files().Owns(handle)) {
      const DriverRequest request{
          .code = code,
          .input = {static_cast<const std::byte*>(input), input == nullptr ? 0 : inputSize},
          .output = {static_cast<std::byte*>(output), output == nullptr ? 0 : outputSize},
          .overlapped = overlapped != nullptr};
      return machine->Files().Control(handle, request, returned) ? TRUE : FALSE;
    }
  }
  return ::DeviceIoControl(handle, code, input, inputSize, output, outputSize, returned, overlapped);
}

BOOL WINAPI Close(HANDLE handle) {
  {
    MachineLock machine;
    if (machine->Files().Close(handle)) return TRUE;
  }
  if (::CloseHandle(handle)) return TRUE;
  const CLastErrorKeeper keeper;
  Gate::Current()->Violate("not an open handle");
  return FALSE;
}

const FunctionRow kRows[] = {
    {"kernel32.dll", KD_SIMULATED(CreateFileW, Create), FailsWithMinusOne(ERROR_ACCESS_DENIED)},
    {"kernel32.dll", KD_SIMULATED(DeviceIoControl, Control), FailsWithZero(ERROR_GEN_FAILURE)},
    {"kernel32.dll", KD_SIMULATED(CloseHandle, Close), FailsWithZero(ERROR_INVALID_HANDLE),
     Closes(HandleKind::File)},
};

}  // namespace

const std::span<const FunctionRow> kFileRows = kRows;

}  // namespace workbench
