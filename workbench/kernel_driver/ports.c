#include "driver.h"

/* {6E2B9D14-7A3C-4F85-9B21-C4D07E5A1F93}, the class of the configuration interface. */
static const GUID interface_class = {
    0x6E2B9D14, 0x7A3C, 0x4F85, {0x9B, 0x21, 0xC4, 0xD0, 0x7E, 0x5A, 0x1F, 0x93}};

NTSTATUS NTAPI kd_add_device(DRIVER_OBJECT* driver, DEVICE_OBJECT* bus) {
  DEVICE_OBJECT* device = NULL;
  const NTSTATUS status =
      IoCreateDevice(driver, sizeof(struct kd_port_device), NULL, 0x8001, 0, FALSE, &device);
  if (!NT_SUCCESS(status)) return status;
  struct kd_port_device* port = device->DeviceExtension;
  port->bus = bus;
  port->open = FALSE;
  port->directory = NULL;
  RtlInitUnicodeString(&port->interface_link, NULL);
  kd_initial_port(&port->port);
  port->lower = IoAttachDeviceToDeviceStack(device, bus);
  if (port->lower == NULL) {
    IoDeleteDevice(device);
    return STATUS_NO_SUCH_DEVICE;
  }
  device->Flags &= ~(ULONG)DO_DEVICE_INITIALIZING;
  return STATUS_SUCCESS;
}

/* Wine 8.0 cannot enable an interface that has a reference string, nor open a device with more behind its
   name. So the interface's name without the string becomes a directory, and the string a link to the device
   in it. */
static NTSTATUS link_interface(struct kd_port_device* port) {
  WCHAR target_name[64];
  ULONG size = 0;
  UNICODE_STRING target;
  UNICODE_STRING name = port->interface_link;
  OBJECT_ATTRIBUTES attributes;
  NTSTATUS status = IoGetDeviceProperty(port->bus, DevicePropertyPhysicalDeviceObjectName, sizeof target_name,
                                        target_name, &size);
  if (!NT_SUCCESS(status)) return status;
  USHORT length = (USHORT)(name.Length / sizeof(WCHAR));
  while (length > 0 && name.Buffer[--length] != L'\\') continue;
  name.Length = (USHORT)(length * sizeof(WCHAR));
  InitializeObjectAttributes(&attributes, &name, OBJ_CASE_INSENSITIVE | OBJ_KERNEL_HANDLE, NULL, NULL);
  status = ZwCreateDirectoryObject(&port->directory, DIRECTORY_ALL_ACCESS, &attributes);
  if (!NT_SUCCESS(status)) return status;
  RtlInitUnicodeString(&target, target_name);
  return IoCreateSymbolicLink(&port->interface_link, &target);
}

static NTSTATUS publish(struct kd_port_device* port) {
  WCHAR text[KD_MOST_REFERENCE];
  UNICODE_STRING reference;
  NTSTATUS status = kd_make_reference(port->bus, text, &reference);
  if (!NT_SUCCESS(status)) return status;
  status = IoRegisterDeviceInterface(port->bus, &interface_class, &reference, &port->interface_link);
  if (!NT_SUCCESS(status)) return status;
  status = IoSetDeviceInterfaceState(&port->interface_link, TRUE);
  return NT_SUCCESS(status) ? status : link_interface(port);
}

static void withdraw(struct kd_port_device* port) {
  if (port->interface_link.Buffer == NULL) return;
  IoSetDeviceInterfaceState(&port->interface_link, FALSE);
  if (port->directory != NULL) {
    IoDeleteSymbolicLink(&port->interface_link);
    ZwClose(port->directory);
    port->directory = NULL;
  }
  RtlFreeUnicodeString(&port->interface_link);
  RtlInitUnicodeString(&port->interface_link, NULL);
}

static NTSTATUS NTAPI signal_completion(DEVICE_OBJECT* device, IRP* irp, void* event) {
  (void)device;
  (void)irp;
  KeSetEvent(event, IO_NO_INCREMENT, FALSE);
  return STATUS_MORE_PROCESSING_REQUIRED;
}

/* Starts what is below first, then this device. */
static NTSTATUS start(struct kd_port_device* port, IRP* irp) {
  KEVENT event;
  KeInitializeEvent(&event, NotificationEvent, FALSE);
  IoCopyCurrentIrpStackLocationToNext(irp);
  IoSetCompletionRoutine(irp, signal_completion, &event, TRUE, TRUE, TRUE);
  NTSTATUS status = IoCallDriver(port->lower, irp);
  if (status == STATUS_PENDING) {
    KeWaitForSingleObject(&event, Executive, KernelMode, FALSE, NULL);
    status = irp->IoStatus.Status;
  }
  if (NT_SUCCESS(status)) status = publish(port);
  return kd_complete(irp, status, 0);
}

NTSTATUS NTAPI kd_plug_and_play(DEVICE_OBJECT* device, IRP* irp) {
  struct kd_port_device* port = device->DeviceExtension;
  const UCHAR minor = IoGetCurrentIrpStackLocation(irp)->MinorFunction;
  if (minor == IRP_MN_START_DEVICE) return start(port, irp);
  if (minor == IRP_MN_REMOVE_DEVICE || minor == IRP_MN_SURPRISE_REMOVAL) withdraw(port);
  if (minor == IRP_MN_QUERY_REMOVE_DEVICE || minor == IRP_MN_REMOVE_DEVICE ||
      minor == IRP_MN_SURPRISE_REMOVAL) {
    irp->IoStatus.Status = STATUS_SUCCESS;
  }
  DEVICE_OBJECT* const lower = port->lower;
  IoSkipCurrentIrpStackLocation(irp);
  const NTSTATUS status = IoCallDriver(lower, irp);
  if (minor == IRP_MN_REMOVE_DEVICE) {
    IoDetachDevice(lower);
    IoDeleteDevice(device);
  }
  return status;
}

/* Whether the port is opened as agreed: for reading and writing, shared with nobody, existing, overlapped.
   Wine tells no access. */
static BOOLEAN opened_as_agreed(const IO_STACK_LOCATION* stack) {
  const ULONG options = stack->Parameters.Create.Options;
  const IO_SECURITY_CONTEXT* security = stack->Parameters.Create.SecurityContext;
  const ACCESS_MASK both = FILE_READ_DATA | FILE_WRITE_DATA;
  if (security != NULL && (security->DesiredAccess & both) != both) return FALSE;
  return stack->Parameters.Create.ShareAccess == 0 &&
         (options & (FILE_SYNCHRONOUS_IO_ALERT | FILE_SYNCHRONOUS_IO_NONALERT)) == 0;
}

NTSTATUS NTAPI kd_port_create(DEVICE_OBJECT* device, IRP* irp) {
  struct kd_port_device* port = device->DeviceExtension;
  const IO_STACK_LOCATION* stack = IoGetCurrentIrpStackLocation(irp);
  NTSTATUS status = STATUS_SUCCESS;
  const KIRQL irql = KeAcquireSpinLockRaiseToDpc(&kd_lock);
  if (port->open || !opened_as_agreed(stack)) {
    status = STATUS_INVALID_PARAMETER;
  } else {
    port->open = TRUE;
    kd_begin_session(&port->port);
  }
  KeReleaseSpinLock(&kd_lock, irql);
  return kd_complete(irp, status, 0);
}

NTSTATUS NTAPI kd_port_close(DEVICE_OBJECT* device, IRP* irp) {
  struct kd_port_device* port = device->DeviceExtension;
  const KIRQL irql = KeAcquireSpinLockRaiseToDpc(&kd_lock);
  port->open = FALSE;
  KeReleaseSpinLock(&kd_lock, irql);
  return kd_complete(irp, STATUS_SUCCESS, 0);
}

NTSTATUS NTAPI kd_port_control(DEVICE_OBJECT* device, IRP* irp) {
  struct kd_port_device* port = device->DeviceExtension;
  const IO_STACK_LOCATION* stack = IoGetCurrentIrpStackLocation(irp);
  const struct kd_request request = {.code = stack->Parameters.DeviceIoControl.IoControlCode,
                                     .buffer = irp->AssociatedIrp.SystemBuffer,
                                     .input_length = stack->Parameters.DeviceIoControl.InputBufferLength,
                                     .output_length = stack->Parameters.DeviceIoControl.OutputBufferLength};
  uint32_t returned = 0;
  const KIRQL irql = KeAcquireSpinLockRaiseToDpc(&kd_lock);
  const bool answered = kd_answer(&port->port, &request, &returned);
  KeReleaseSpinLock(&kd_lock, irql);
  return kd_complete(irp, answered ? STATUS_SUCCESS : STATUS_INVALID_PARAMETER, returned);
}
