# DLLs that only some calls need, with every function that is used of them. A function that is missing here
# becomes an ordinary import and makes each installation step load its DLL: the test of the import table
# tells.
kd_delay_load(wininet.dll
  HttpOpenRequestW HttpSendRequestW InternetCloseHandle InternetConnectW InternetGetLastResponseInfoW
  InternetOpenW InternetReadFile)
kd_delay_load(comctl32.dll CreatePropertySheetPageW DestroyPropertySheetPage PropertySheetW)
kd_delay_load(msports.dll
  ComDBClaimPort ComDBClose ComDBGetCurrentPortUsage ComDBOpen ComDBReleasePort)
kd_delay_load(newdev.dll UpdateDriverForPlugAndPlayDevicesW)
kd_delay_load(oleaut32.dll
  LoadTypeLib RegisterTypeLib RegisterTypeLibForUser UnRegisterTypeLib UnRegisterTypeLibForUser)
kd_delay_load(shell32.dll ShellExecuteW)
kd_delay_load(shlwapi.dll PathFindFileNameW PathRemoveExtensionW)
