// The host that the workbench program shows: one device server with four ports.
#pragma once

#include "workbench/device_server/http_device_server.h"

#include <array>
#include <cstdint>

#include "workbench/machine/machine.h"
#include "workbench/simulated_driver/port_driver.h"

namespace workbench {

// A simulated machine with a device server of four ports, COM5 to COM8, their drivers, and the device
// server's web side on loopback; the machine's own serial port is COM1. Each port is set differently on the
// device and in the drivers, so that it shows where a value comes from:
//   1  RS-232, connected
//   2  RS-232, idle, without a DSR line, ordered to show CTS always
//   3  RS-485 half duplex, tunneling
//   4  RS-232/422/485, idle, without a CTS line
class SampleHost {
 public:
  static constexpr unsigned kPorts = 4;

  // Throws std::runtime_error when loopback or the registry refuse.
  SampleHost();

  // The device server cannot be reached any more: connections to it are refused.
  void TakeOffline() { web_.Stop(); }

  [[nodiscard]] Machine& Host() { return machine_; }
  [[nodiscard]] HttpDeviceServer& Web() { return web_; }
  // Ports by number, from 1.
  [[nodiscard]] Device& Port(unsigned number) { return *server_.ports.at(number - 1); }
  [[nodiscard]] PortDriver& Driver(unsigned number) { return drivers_.at(number - 1); }

 private:
  void SetUpPort(unsigned number);

  HttpDeviceServer web_;
  std::array<PortDriver, kPorts> drivers_;  // outlive the machine
  Machine machine_;
  DeviceServer server_;
};

}  // namespace workbench
