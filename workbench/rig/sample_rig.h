// The computer that the workbench program shows: one device server with four ports.
#pragma once

#include "workbench/rig/rig.h"

namespace workbench {

// A rig with a device server of four ports, COM5 to COM8; the computer's own serial port is COM1. Each port
// is set differently on the device and in the drivers, so that it shows where a value comes from:
//   1  RS-232, connected
//   2  RS-232, idle, without a DSR line, ordered to show CTS always
//   3  RS-485 half duplex, tunneling
//   4  RS-232/422/485, idle, without a CTS line
// The DLL is not loaded yet.
struct SampleRig : Rig {
  static constexpr unsigned kPorts = 4;
  SampleRig();
};

}  // namespace workbench
