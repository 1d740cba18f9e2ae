// The COM name database (msports) and the DOS device names.
#include "workbench/machine/tables/tables.h"
#include "workbench/text/device_text.h"

// mingw-w64 has no header for msports.dll; these are the documented declarations.
extern "C" {
LONG WINAPI ComDBOpen(HANDLE* database);
LONG WINAPI ComDBClose(HANDLE database);
LONG WINAPI ComDBClaimPort(HANDLE database, DWORD number, BOOL force, BOOL* forced);
LONG WINAPI ComDBReleasePort(HANDLE database, DWORD number);
LONG WINAPI ComDBGetCurrentPortUsage(HANDLE database, BYTE* buffer, DWORD size, ULONG reportType,
                                     DWORD* ports);
}

namespace workbench {
namespace {

constexpr ULONG kReportBytes = 1;  // CDB_REPORT_BYTES

bool IsOpenDatabase(MachineLock& machine, HANDLE handle) {
  if (machine->ComNames().IsOpen(handle)) return true;
  machine->Calls().Violate("not an open COM name database");
  return false;
}

LONG WINAPI Open(HANDLE* database) {
  MachineLock machine;
  if (database == nullptr) return ERROR_INVALID_PARAMETER;
  if (machine->ComNames().openError != ERROR_SUCCESS) {
    *database = INVALID_HANDLE_VALUE;
    return static_cast<LONG>(machine->ComNames().openError);
  }
  *database = machine->ComNames().OpenHandle();
  return ERROR_SUCCESS;
}

LONG WINAPI Close(HANDLE database) {
  MachineLock machine;
  if (!IsOpenDatabase(machine, database)) return ERROR_INVALID_PARAMETER;
  machine->ComNames().CloseHandle(database);
  return ERROR_SUCCESS;
}

LONG WINAPI ClaimPort(HANDLE database, DWORD number, BOOL force, BOOL* forced) {
  MachineLock machine;
  if (!IsOpenDatabase(machine, database)) return ERROR_INVALID_PARAMETER;
  if (number == 0 || number > ComDatabase::kMaximumPorts) return ERROR_INVALID_PARAMETER;
  const bool taken = machine->ComNames().IsClaimed(number);
  if (forced != nullptr) *forced = taken && force ? TRUE : FALSE;
  if (taken && !force) return ERROR_SHARING_VIOLATION;
  machine->ComNames().Claim(number);
  return ERROR_SUCCESS;
}

LONG WINAPI ReleasePort(HANDLE database, DWORD number) {
  MachineLock machine;
  if (!IsOpenDatabase(machine, database)) return ERROR_INVALID_PARAMETER;
  if (number == 0 || number > machine->ComNames().Ports()) return ERROR_INVALID_PARAMETER;
  machine->ComNames().Release(number);
  return ERROR_SUCCESS;
}

LONG WINAPI GetUsage(HANDLE database, BYTE* buffer, DWORD size, ULONG reportType, DWORD* ports) {
  MachineLock machine;
  if (!IsOpenDatabase(machine, database)) return ERROR_INVALID_PARAMETER;
  const ComDatabase& names = machine->ComNames();
  if (buffer == nullptr) {
    if (ports == nullptr) return ERROR_INVALID_PARAMETER;
    *ports = names.Ports();
    return ERROR_SUCCESS;
  }
  if (reportType != kReportBytes) {
    machine->Calls().Violate("only CDB_REPORT_BYTES is simulated");
    return ERROR_INVALID_PARAMETER;
  }
  const DWORD reported = std::min(size, names.Ports());
  std::fill(buffer, buffer + size, BYTE{0});
  for (DWORD index = 0; index < reported; ++index) buffer[index] = names.IsClaimed(index + 1) ? 1 : 0;
  if (ports != nullptr) *ports = reported;
  return ERROR_SUCCESS;
}

// Puts the texts into the buffer, each with its terminator and one more at the end.
DWORD PutTexts(const std::vector<std::wstring>& texts, wchar_t* buffer, DWORD length) {
  std::wstring all;
  for (const std::wstring& text : texts) all += text + L'\0';
  all += L'\0';
  if (buffer == nullptr || all.size() > length) return FailWith<DWORD>(ERROR_INSUFFICIENT_BUFFER);
  all.copy(buffer, all.size());
  return static_cast<DWORD>(all.size());
}

DWORD WINAPI QueryName(const wchar_t* name, wchar_t* buffer, DWORD length) {
  MachineLock machine;
  if (name == nullptr) return PutTexts(machine->DosNames().Names(), buffer, length);
  const std::vector<std::wstring> targets = machine->DosNames().Targets(name);
  return targets.empty() ? FailWith<DWORD>(ERROR_FILE_NOT_FOUND) : PutTexts(targets, buffer, length);
}

BOOL WINAPI DefineName(DWORD flags, const wchar_t* name, const wchar_t* target) {
  MachineLock machine;
  const bool removes = (flags & DDD_REMOVE_DEFINITION) != 0;
  if ((flags & DDD_RAW_TARGET_PATH) == 0 || name == nullptr || (target == nullptr && !removes))
    return machine->Calls().Misused("not a raw target path, or a missing text", ERROR_INVALID_PARAMETER);
  if (!removes) {
    machine->DosNames().Define(name, target);
    return TRUE;
  }
  const bool exact = (flags & DDD_EXACT_MATCH_ON_REMOVE) != 0;
  const bool removed = machine->DosNames().Remove(name, target == nullptr ? L"" : target, exact);
  return removed ? TRUE : FailWith(ERROR_FILE_NOT_FOUND);
}

const FunctionRow kRows[] = {
    {"msports.dll", KD_SIMULATED(ComDBOpen, Open), FailsWithStatus(ERROR_ACCESS_DENIED),
     GivesArgument(HandleKind::ComDatabase, 0)},
    {"msports.dll", KD_SIMULATED(ComDBClose, Close), FailsWithStatus(ERROR_INVALID_PARAMETER),
     Closes(HandleKind::ComDatabase)},
    {"msports.dll", KD_SIMULATED(ComDBClaimPort, ClaimPort), FailsWithStatus(ERROR_CANTWRITE)},
    {"msports.dll", KD_SIMULATED(ComDBReleasePort, ReleasePort), FailsWithStatus(ERROR_CANTWRITE)},
    {"msports.dll", KD_SIMULATED(ComDBGetCurrentPortUsage, GetUsage),
     FailsWithStatus(ERROR_INVALID_PARAMETER)},
    {"kernel32.dll", KD_SIMULATED(QueryDosDeviceW, QueryName), FailsWithZero(ERROR_FILE_NOT_FOUND)},
    {"kernel32.dll", KD_SIMULATED(DefineDosDeviceW, DefineName), FailsWithZero(ERROR_ACCESS_DENIED)},
};

}  // namespace

const std::span<const FunctionRow> kComNameRows = kRows;

}  // namespace workbench
