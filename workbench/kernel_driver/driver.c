/* A kernel driver behind a port's configuration interface, for Wine's and Windows' own I/O manager: what user
   mode sends it has gone through a real CreateFile and DeviceIoControl. It moves no serial data. */
#include "driver.h"

KSPIN_LOCK kd_lock;

NTSTATUS kd_complete(IRP* irp, NTSTATUS status, ULONG_PTR information) {
  irp->IoStatus.Status = status;
  irp->IoStatus.Information = information;
  IoCompleteRequest(irp, IO_NO_INCREMENT);
  return status;
}

static void NTAPI unload(DRIVER_OBJECT* driver) {
  (void)driver;
}

NTSTATUS NTAPI DriverEntry(DRIVER_OBJECT* driver, UNICODE_STRING* registry_path) {
  (void)registry_path;
  KeInitializeSpinLock(&kd_lock);
  driver->DriverExtension->AddDevice = kd_add_device;
  driver->DriverUnload = unload;
  driver->MajorFunction[IRP_MJ_CREATE] = kd_port_create;
  driver->MajorFunction[IRP_MJ_CLOSE] = kd_port_close;
  driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = kd_port_control;
  driver->MajorFunction[IRP_MJ_PNP] = kd_plug_and_play;
  return STATUS_SUCCESS;
}
