/* What the parts of the kernel driver share: ports.c is the port devices. */
#ifndef KD_DRIVER_H
#define KD_DRIVER_H

#include <ddk/wdm.h>

#include "exchange.h"

struct kd_port_device {
  DEVICE_OBJECT* bus;   /* the device that the bus made */
  DEVICE_OBJECT* lower; /* next in the stack */
  UNICODE_STRING interface_link;
  HANDLE directory; /* of the link, where the I/O manager does not make it; else null */
  BOOLEAN open;
  struct kd_port port;
};

/* Guards every port. Held for a request, never across a call out of the driver. */
extern KSPIN_LOCK kd_lock;

NTSTATUS kd_complete(IRP* irp, NTSTATUS status, ULONG_PTR information);

/* ports.c */
NTSTATUS NTAPI kd_add_device(DRIVER_OBJECT* driver, DEVICE_OBJECT* bus);
NTSTATUS NTAPI kd_port_create(DEVICE_OBJECT* device, IRP* irp);
NTSTATUS NTAPI kd_port_close(DEVICE_OBJECT* device, IRP* irp);
NTSTATUS NTAPI kd_port_control(DEVICE_OBJECT* device, IRP* irp);
NTSTATUS NTAPI kd_plug_and_play(DEVICE_OBJECT* device, IRP* irp);

/* reference.c. The string by which user mode tells the interfaces apart: a prefix and the name of the
   device's driver key without its backslashes. `characters` has room for KD_MOST_REFERENCE. */
enum { KD_MOST_REFERENCE = 128 };
NTSTATUS kd_make_reference(DEVICE_OBJECT* bus, WCHAR* characters, UNICODE_STRING* reference);

#endif
