// A simulated computer with everything at it: what tests, measurements and the demo work on.
#pragma once

#include <windows.h>

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "workbench/device_server/http_device_server.h"
#include "workbench/machine/builders.h"
#include "workbench/machine/dll.h"
#include "workbench/rig/device_installer.h"
#include "workbench/simulated_driver/port_driver.h"

namespace workbench {

struct RigOptions {
  std::vector<unsigned> comNumbers{7,
                                   8};  // of the device server's ports, in enumeration order; none: no server
  bool web = true;                      // the device server's HTTP side is up, and the drivers point at it
  bool loaded = true;                   // the DLL is
};

// One device server with a driver behind each port, its HTTP side on loopback, and the DLL. Ports are counted
// from 0; the device server itself counts from 1, in its addresses ("/p1") and in SetPort.
class Rig {
 public:
  explicit Rig(const RigOptions& options = {});
  Rig(const Rig&) = delete;
  Rig& operator=(const Rig&) = delete;

  // Loads the DLL; `dll.reset()` unloads it. Throws as Dll does.
  void Load(const std::wstring& path = Dll::DefaultPath()) { dll.emplace(machine, path); }
  // The HTTP side answers from now on. Before AddServer, so that the drivers know where it is.
  void StartWeb() { web.Start(); }
  // One more device server, which Port and Driver are about from now on.
  DeviceServer& AddServer(std::vector<unsigned> comNumbers);
  [[nodiscard]] DeviceInstaller Installer() { return {machine, *dll}; }

  [[nodiscard]] Device& Port(unsigned index = 0) { return *server.ports.at(index); }
  [[nodiscard]] PortDriver& Driver(unsigned index = 0) { return drivers.at(index); }
  [[nodiscard]] ParameterValues& PortSet(unsigned index = 0) { return Driver(index).Current(kPortSet); }
  [[nodiscard]] ParameterValues& BusSet(unsigned index = 0) { return Driver(index).Current(kBusSet); }
  [[nodiscard]] std::vector<MessageBoxRecord>& Boxes() { return machine.Screen().messageBoxes; }
  [[nodiscard]] std::wstring NameOf(const Device& port) { return PlacesOf(machine, port).portName; }

  // What the DLL did wrong so far: interfaces of Windows misused, requests that a driver refused.
  [[nodiscard]] std::vector<std::string> Misuse() const;
  // What it has not given back: handles, and opens of the drivers.
  [[nodiscard]] std::vector<std::string> LeftOpen() const;

  HttpDeviceServer web;
  std::deque<PortDriver> drivers;  // outlive the machine
  Machine machine;
  ServerSpec wanted;  // what the next AddServer makes
  DeviceServer server;
  std::optional<Dll> dll;

 private:
  [[nodiscard]] DriverEndpoint* DriverOf(unsigned index);
};

// Makes the driver that of the port with this number, from 1, of the device server.
void PointAt(PortDriver& driver, const HttpDeviceServer& web, unsigned number);

}  // namespace workbench
