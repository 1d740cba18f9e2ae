#include "driver.h"

static const WCHAR prefix[] = L"kdgendrv_";
static const WCHAR enum_key[] = L"\\Registry\\Machine\\System\\CurrentControlSet\\Enum\\";

enum { MOST_PATH = 320 };

/* Text that grows in an array and stays as it is when there is no more room. */
struct text {
  USHORT length; /* characters */
  WCHAR *characters;
  USHORT room;
};

static BOOLEAN append(struct text *text, const WCHAR *more) {
  for (; *more != 0; ++more) {
    if (text->length + 1 >= text->room) return FALSE;
    text->characters[text->length++] = *more;
  }
  text->characters[text->length] = 0;
  return TRUE;
}

/* Asks the bus for one of the device's ids; null when it has none. To be freed with ExFreePool. */
static WCHAR *query_id(DEVICE_OBJECT *bus, BUS_QUERY_ID_TYPE type) {
  KEVENT event;
  IO_STATUS_BLOCK block = {0};
  KeInitializeEvent(&event, NotificationEvent, FALSE);
  IRP *irp = IoBuildSynchronousFsdRequest(IRP_MJ_PNP, bus, NULL, 0, NULL, &event, &block);
  if (irp == NULL) return NULL;
  irp->IoStatus.Status = STATUS_NOT_SUPPORTED;
  IO_STACK_LOCATION *stack = IoGetNextIrpStackLocation(irp);
  stack->MinorFunction = IRP_MN_QUERY_ID;
  stack->Parameters.QueryId.IdType = type;
  NTSTATUS status = IoCallDriver(bus, irp);
  if (status == STATUS_PENDING) {
    KeWaitForSingleObject(&event, Executive, KernelMode, FALSE, NULL);
    status = block.Status;
  }
  return NT_SUCCESS(status) ? (WCHAR *)block.Information : NULL;
}

/* The path of the device's own key. */
static BOOLEAN device_key_path(DEVICE_OBJECT *bus, struct text *path) {
  WCHAR *device = query_id(bus, BusQueryDeviceID);
  WCHAR *instance = query_id(bus, BusQueryInstanceID);
  const BOOLEAN made = device != NULL && instance != NULL && append(path, enum_key) && append(path, device) &&
                       append(path, L"\\") && append(path, instance);
  if (device != NULL) ExFreePool(device);
  if (instance != NULL) ExFreePool(instance);
  return made;
}

/* Reads the name of the driver key out of the device's own key: Wine's I/O manager does not tell it. */
static NTSTATUS read_driver_key(DEVICE_OBJECT *bus, WCHAR *key, ULONG size) {
  WCHAR characters[MOST_PATH];
  struct text path = {0, characters, MOST_PATH};
  union {
    KEY_VALUE_PARTIAL_INFORMATION information;
    UCHAR bytes[sizeof(KEY_VALUE_PARTIAL_INFORMATION) + KD_MOST_REFERENCE * sizeof(WCHAR)];
  } value;
  UNICODE_STRING name;
  OBJECT_ATTRIBUTES attributes;
  HANDLE opened;
  ULONG needed;
  if (!device_key_path(bus, &path)) return STATUS_OBJECT_NAME_NOT_FOUND;
  RtlInitUnicodeString(&name, characters);
  InitializeObjectAttributes(&attributes, &name, OBJ_CASE_INSENSITIVE | OBJ_KERNEL_HANDLE, NULL, NULL);
  NTSTATUS status = ZwOpenKey(&opened, KEY_READ, &attributes);
  if (!NT_SUCCESS(status)) return status;
  RtlInitUnicodeString(&name, L"Driver");
  status = ZwQueryValueKey(opened, &name, KeyValuePartialInformation, &value, sizeof value, &needed);
  ZwClose(opened);
  if (!NT_SUCCESS(status)) return status;
  if (value.information.DataLength > size) return STATUS_BUFFER_TOO_SMALL;
  RtlCopyMemory(key, value.information.Data, value.information.DataLength);
  return STATUS_SUCCESS;
}

NTSTATUS kd_make_reference(DEVICE_OBJECT *bus, WCHAR *characters, UNICODE_STRING *reference) {
  WCHAR key[KD_MOST_REFERENCE] = {0};
  const ULONG size = sizeof key - sizeof *key;
  ULONG needed = 0;
  NTSTATUS status = IoGetDeviceProperty(bus, DevicePropertyDriverKeyName, size, key, &needed);
  if (status == STATUS_NOT_IMPLEMENTED) status = read_driver_key(bus, key, size);
  if (!NT_SUCCESS(status)) return status;
  struct text text = {0, characters, KD_MOST_REFERENCE};
  append(&text, prefix);
  for (const WCHAR *at = key; *at != 0; ++at) {
    const WCHAR one[] = {*at, 0};
    if (*at != L'\\' && !append(&text, one)) return STATUS_BUFFER_TOO_SMALL;
  }
  RtlInitUnicodeString(reference, characters);
  return STATUS_SUCCESS;
}
