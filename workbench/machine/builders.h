// Ready-made devices, and a look at the places of a COM name.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "workbench/machine/models/machine.h"

namespace workbench {

inline constexpr GUID kPortsClass = {
    0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
inline constexpr GUID kMultiportClass = {
    0x50906CB8, 0xBA12, 0x11D1, {0xBF, 0x5D, 0x00, 0x00, 0xF8, 0x05, 0xF5, 0x30}};
inline constexpr GUID kUsbClass = {
    0x36FC9E60, 0xC465, 0x11CF, {0x80, 0x56, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};
inline constexpr GUID kConfigurationInterface = {
    0x6E2B9D14, 0x7A3C, 0x4F85, {0x9B, 0x21, 0xC4, 0xD0, 0x7E, 0x5A, 0x1F, 0x93}};

// A device server (class "Multi-port serial adapters", below the root) and its ports.
struct ServerSpec {
  unsigned number = 1;                 // another one for each device server of a machine
  std::vector<unsigned> comNumbers{};  // one port each, in enumeration order; 0: a port without "PortName"
  bool started = true;                 // ports started, with their DOS device and SERIALCOMM value
  bool claimed = true;                 // numbers claimed in the COM name database
  // The driver behind port `index` (from 0); may be empty or return null.
  std::function<DriverEndpoint*(unsigned index)> driver{};
};
struct DeviceServer {
  Device* card = nullptr;
  std::vector<Device*> ports{};
};
DeviceServer AddDeviceServer(Machine& machine, const ServerSpec& wanted);
// One more port at the end of a server, also to bring back one that was removed: the same server, index
// and kind make the same instance id.
Device& AddServerPort(Machine& machine, Device& card, const ServerSpec& wanted, unsigned index,
                      unsigned comNumber);

// A USB device with this hardware id (for example "USB\VID_3A7E&PID_1015") and one port below it.
struct UsbSpec {
  std::wstring hardwareId{};
  std::wstring instance = L"5&1A2B3C4D&0&1";
  unsigned comNumber = 9;
  bool claimed = true;
  DriverEndpoint* driver = nullptr;
};
struct UsbDevice {
  Device* usb = nullptr;
  Device* port = nullptr;
};
UsbDevice AddUsbDevice(Machine& machine, const UsbSpec& wanted);

// Any other port of the host, for example a modem on COM2.
Device& AddForeignPort(Machine& machine, unsigned comNumber);

// The reference string of a device's configuration interface: "kdgendrv_" and the driver key name without
// its backslashes.
[[nodiscard]] std::wstring ConfigurationReference(const std::wstring& driverKey);

// What the places that hold a port's COM name say.
struct ComPlaces {
  std::wstring instanceId{};
  std::wstring portName{};                 // "PortName"; "" when absent
  std::wstring friendlyName{};             // whole text
  std::vector<std::wstring> dosDevices{};  // DOS names that lead to the port's kernel device
  std::wstring serialComm{};               // what SERIALCOMM maps the kernel device to; "" when absent
  bool claimed = false;                    // the number of `portName` is taken in the database
  std::wstring portsValue{};               // the Ports key's value of "PortName:"; "" when absent
  // All five places (database, DOS device, SERIALCOMM, "PortName", friendly name) hold one name.
  [[nodiscard]] bool Agree() const;
};
[[nodiscard]] ComPlaces PlacesOf(Machine& machine, const Device& device);
// Every port of the machine that is there, in order of addition.
[[nodiscard]] std::vector<ComPlaces> AllComPlaces(Machine& machine);
// As a table for people; a line whose places do not agree ends in "<-- disagree".
[[nodiscard]] std::wstring FormatPlaces(const std::vector<ComPlaces>& places);

}  // namespace workbench
