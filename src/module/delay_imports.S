// DLLs that only some calls need, with every function that is used of them, and what a missing one answers. A
// function that is not in this list becomes an ordinary import and makes each installation step load its DLL, which
// the test of the import table reports.
#include "module/runtime/delay_load.inc"

delay_load wininet.dll, FailWithZero, HttpOpenRequestW, HttpSendRequestW, InternetCloseHandle, InternetConnectW, \
  InternetGetLastResponseInfoW, InternetOpenW, InternetReadFile
delay_load comctl32.dll, FailWithZero, CreatePropertySheetPageW, DestroyPropertySheetPage, PropertySheetW
delay_load msports.dll, FailWithErrorCode, ComDBClaimPort, ComDBClose, ComDBGetCurrentPortUsage, ComDBOpen, \
  ComDBReleasePort
delay_load newdev.dll, FailWithZero, UpdateDriverForPlugAndPlayDevicesW
delay_load oleaut32.dll, FailWithResult, LoadTypeLib, RegisterTypeLib, RegisterTypeLibForUser, UnRegisterTypeLib, \
  UnRegisterTypeLibForUser
delay_load shell32.dll, FailWithZero, ShellExecuteW
delay_load shlwapi.dll, FailWithZero, PathFindFileNameW, PathRemoveExtensionW
