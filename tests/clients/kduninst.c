/* Stands for the product's uninstall program: says that it was started. */
#include <windows.h>

int wmain(void) {
  wchar_t mark[MAX_PATH];
  HANDLE file;
  if (GetModuleFileNameW(NULL, mark, MAX_PATH - 8) == 0) return 1;
  lstrcatW(mark, L".ran");
  file = CreateFileW(mark, GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, NULL);
  if (file == INVALID_HANDLE_VALUE) return 1;
  CloseHandle(file);
  return 0;
}
