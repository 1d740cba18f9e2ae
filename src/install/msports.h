// The COM name database of the ports class installer (msports.dll), which mingw-w64 has no header for.
// Windows only.
#pragma once

#include <windows.h>

using HCOMDB = HANDLE;

inline const HCOMDB kNoComDb = INVALID_HANDLE_VALUE;
constexpr DWORD kComDbReportBytes = 1;  // CDB_REPORT_BYTES: one byte per number, 0 when it is free

extern "C" {
DECLSPEC_IMPORT LONG WINAPI ComDBOpen(HCOMDB* database);
DECLSPEC_IMPORT LONG WINAPI ComDBClose(HCOMDB database);
DECLSPEC_IMPORT LONG WINAPI ComDBGetCurrentPortUsage(HCOMDB database, BYTE* buffer, DWORD bufferSize,
                                                     DWORD reportType, DWORD* portsReported);
DECLSPEC_IMPORT LONG WINAPI ComDBClaimPort(HCOMDB database, DWORD number, BOOL force, BOOL* forced);
DECLSPEC_IMPORT LONG WINAPI ComDBReleasePort(HCOMDB database, DWORD number);
}
