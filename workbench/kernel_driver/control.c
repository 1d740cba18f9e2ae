#include "driver.h"

static const WCHAR device_name[] = L"\\Device\\KdWorkbenchControl";
static const WCHAR link_name[] = L"\\DosDevices\\KdWorkbenchControl";

enum { MOST_SCRIPTED = 6 };

/* There is one back door, whatever the number of ports. */
static struct kd_scripted_answer scripted[MOST_SCRIPTED];
static uint32_t scripted_count;
static struct kd_records kept;

NTSTATUS kd_create_control(DRIVER_OBJECT *driver) {
  UNICODE_STRING name, link;
  DEVICE_OBJECT *device = NULL;
  RtlInitUnicodeString(&name, device_name);
  RtlInitUnicodeString(&link, link_name);
  NTSTATUS status =
      IoCreateDevice(driver, sizeof(enum kd_device_kind), &name, 0x8002, 0, FALSE, &device);
  if (!NT_SUCCESS(status)) return status;
  *(enum kd_device_kind *)device->DeviceExtension = KD_CONTROL_DEVICE;
  status = IoCreateSymbolicLink(&link, &name);
  if (!NT_SUCCESS(status)) {
    IoDeleteDevice(device);
    return status;
  }
  device->Flags &= ~(ULONG)DO_DEVICE_INITIALIZING;
  return STATUS_SUCCESS;
}

/* Called when the ports are gone: the back door is the one device that is left. */
void kd_delete_control(DRIVER_OBJECT *driver) {
  UNICODE_STRING link;
  RtlInitUnicodeString(&link, link_name);
  IoDeleteSymbolicLink(&link);
  if (driver->DeviceObject != NULL) IoDeleteDevice(driver->DeviceObject);
}

const struct kd_scripted_answer *kd_scripted(uint32_t code) {
  for (uint32_t i = 0; i < scripted_count; ++i) {
    if (scripted[i].code == code) return &scripted[i];
  }
  return NULL;
}

void kd_record(const struct kd_record *record) {
  if (kept.count < KD_MOST_RECORDS) kept.records[kept.count] = *record;
  ++kept.count;
}

static void reset(DEVICE_OBJECT *control) {
  scripted_count = 0;
  kept.count = 0;
  for (DEVICE_OBJECT *device = control->DriverObject->DeviceObject; device != NULL;
       device = device->NextDevice) {
    struct kd_port_device *port = device->DeviceExtension;
    if (port->kind == KD_PORT_DEVICE) kd_initial_port(&port->port);
  }
}

static NTSTATUS script(const struct kd_scripted_answer *answer, ULONG length) {
  if (length != sizeof *answer || answer->length > KD_MOST_ANSWER) return STATUS_INVALID_PARAMETER;
  uint32_t at = 0;
  while (at < scripted_count && scripted[at].code != answer->code) ++at;
  if (at == MOST_SCRIPTED) return STATUS_INSUFFICIENT_RESOURCES;
  scripted[at] = *answer;
  if (at == scripted_count) ++scripted_count;
  return STATUS_SUCCESS;
}

NTSTATUS kd_control_control(DEVICE_OBJECT *device, IRP *irp) {
  const IO_STACK_LOCATION *stack = IoGetCurrentIrpStackLocation(irp);
  const ULONG output = stack->Parameters.DeviceIoControl.OutputBufferLength;
  void *buffer = irp->AssociatedIrp.SystemBuffer;
  NTSTATUS status = STATUS_SUCCESS;
  ULONG returned = 0;
  const KIRQL irql = KeAcquireSpinLockRaiseToDpc(&kd_lock);
  switch (stack->Parameters.DeviceIoControl.IoControlCode) {
    case KD_CONTROL_RESET:
      reset(device);
      break;
    case KD_CONTROL_SCRIPT:
      status = script(buffer, stack->Parameters.DeviceIoControl.InputBufferLength);
      break;
    case KD_CONTROL_RECORDS:
      if (output == sizeof kept) {
        *(struct kd_records *)buffer = kept;
        returned = sizeof kept;
      } else {
        status = STATUS_BUFFER_TOO_SMALL;
      }
      break;
    default:
      status = STATUS_INVALID_DEVICE_REQUEST;
  }
  KeReleaseSpinLock(&kd_lock, irql);
  return kd_complete(irp, status, returned);
}
