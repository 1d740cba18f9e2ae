#include "driver.h"

/* KEY_NAME_INFORMATION, which the headers lack, with room for a driver key's path. */
struct key_name {
  ULONG length; /* bytes */
  WCHAR characters[256];
};

static const WCHAR prefix[] = L"kdgendrv_";

/* The path of the device's driver key, which ends in "\{class}\0000". Asked of the key itself: Wine's I/O
   manager has no property for it. */
static NTSTATUS driver_key_path(DEVICE_OBJECT* bus, struct key_name* path) {
  HANDLE key;
  ULONG needed;
  NTSTATUS status = IoOpenDeviceRegistryKey(bus, PLUGPLAY_REGKEY_DRIVER, KEY_READ, &key);
  if (!NT_SUCCESS(status)) return status;
  status = ZwQueryKey(key, KeyNameInformation, path, sizeof *path, &needed);
  ZwClose(key);
  return status;
}

NTSTATUS kd_make_reference(DEVICE_OBJECT* bus, WCHAR* characters, UNICODE_STRING* reference) {
  struct key_name path;
  const NTSTATUS status = driver_key_path(bus, &path);
  if (!NT_SUCCESS(status)) return status;
  const WCHAR* const end = path.characters + path.length / sizeof(WCHAR);
  const WCHAR* at = end;
  for (int parts = 0; parts < 2 && at > path.characters;) parts += *--at == L'\\';
  ULONG length = 0;
  for (const WCHAR* one = prefix; *one != 0; ++one) characters[length++] = *one;
  for (; at < end; ++at) {
    if (length + 1 >= KD_MOST_REFERENCE) return STATUS_BUFFER_TOO_SMALL;
    if (*at != L'\\') characters[length++] = *at;
  }
  characters[length] = 0;
  RtlInitUnicodeString(reference, characters);
  return STATUS_SUCCESS;
}
