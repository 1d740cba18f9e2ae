#include "workbench/machine/builders.h"

#include <algorithm>
#include <cstdio>

#include "workbench/text/device_text.h"
#include "workbench/text/text_table.h"

namespace workbench {
namespace {

std::wstring Numbered(const wchar_t* format, unsigned number) {
  wchar_t text[96];
  std::swprintf(text, 96, format, number);
  return text;
}

// Driver keys of one class are numbered through: the next free one.
std::wstring NextDriverKey(Machine& machine, const GUID& classGuid) {
  std::size_t used = 0;
  for (const Device* device : machine.Devices().All())
    used += IsEqualGUID(device->classGuid, classGuid) ? 1 : 0;
  return GuidText(classGuid) + Numbered(L"\\%04u", static_cast<unsigned>(used));
}

std::wstring NextKernelDevice(Machine& machine) {
  for (unsigned number = 0;; ++number) {
    const std::wstring name = Numbered(L"\\Device\\KdPort%u", number);
    if (machine.Devices().FindPort(name) == nullptr) return name;
  }
}

struct PortParts {
  std::wstring instanceId, hardwareId, description;
  unsigned comNumber = 0;
  bool started = true;
  bool claimed = true;
  DriverEndpoint* driver = nullptr;
  bool configurable = true;  // publishes the configuration interface
};

Device& AddPort(Machine& machine, Device* parent, const PortParts& parts) {
  const std::wstring name = parts.comNumber == 0 ? L"" : Numbered(L"COM%u", parts.comNumber);
  const std::wstring driverKey = NextDriverKey(machine, kPortsClass);
  Device& device = machine.Devices().Add(
      {.instanceId = parts.instanceId,
       .classGuid = kPortsClass,
       .className = L"Ports",
       .description = parts.description,
       .friendlyName = name.empty() ? parts.description : parts.description + L" (" + name + L")",
       .driverKey = driverKey,
       .hardwareIds = {parts.hardwareId},
       .started = false},  // it has no names yet
      parent);
  device.port = SerialPort{.kernelDevice = NextKernelDevice(machine)};
  if (!name.empty()) machine.Registry().SetText(ParametersKeyOf(device.instanceId), L"PortName", name);
  if (parts.started) machine.Devices().Start(device);
  if (parts.claimed) machine.ComNames().Claim(parts.comNumber);
  if (parts.configurable) {
    machine.Devices().AddInterface(device, kConfigurationInterface, ConfigurationReference(driverKey),
                                   parts.driver);
  }
  return device;
}

}  // namespace

std::wstring ConfigurationReference(const std::wstring& driverKey) {
  std::wstring reference = driverKey;
  std::erase(reference, L'\\');
  return L"kdgendrv_" + reference;
}

Device& AddServerPort(Machine& machine, Device& card, const ServerSpec& wanted, unsigned index,
                      unsigned comNumber) {
  return AddPort(machine, &card,
                 {.instanceId = Numbered(L"KDNBUS\\VELTRANETPORT\\%u&", wanted.number) +
                                Numbered(L"2F8C1D3A&0&%02u", index + 1),
                  .hardwareId = L"KDNBUS\\VELTRANETPORT",
                  .description = L"Veltranet Serial Port",
                  .comNumber = comNumber,
                  .started = wanted.started,
                  .claimed = wanted.claimed,
                  .driver = wanted.driver ? wanted.driver(index) : nullptr});
}

DeviceServer AddDeviceServer(Machine& machine, const ServerSpec& wanted) {
  DeviceServer server;
  server.card = &machine.Devices().Add({.instanceId = Numbered(L"ROOT\\VELTRANET\\%04u", wanted.number),
                                        .classGuid = kMultiportClass,
                                        .className = L"MultiportSerial",
                                        .description = L"Keldrin Veltranet Device Server",
                                        .friendlyName = {},
                                        .driverKey = NextDriverKey(machine, kMultiportClass),
                                        .hardwareIds = {L"ROOT\\VELTRANET"}});
  unsigned index = 0;
  for (const unsigned number : wanted.comNumbers) {
    server.ports.push_back(&AddServerPort(machine, *server.card, wanted, index++, number));
  }
  return server;
}

UsbDevice AddUsbDevice(Machine& machine, const UsbSpec& wanted) {
  UsbDevice made;
  made.usb = &machine.Devices().Add({.instanceId = wanted.hardwareId + L"\\" + wanted.instance,
                                     .classGuid = kUsbClass,
                                     .className = L"USB",
                                     .description = L"Keldrin USB Serial Device",
                                     .friendlyName = {},
                                     .driverKey = NextDriverKey(machine, kUsbClass),
                                     .hardwareIds = {wanted.hardwareId}});
  made.port = &AddPort(machine, made.usb,
                       {.instanceId = L"KDUSB\\PORT\\" + wanted.instance + L"&00",
                        .hardwareId = L"KDUSB\\PORT",
                        .description = L"Keldrin USB Serial Port",
                        .comNumber = wanted.comNumber,
                        .claimed = wanted.claimed,
                        .driver = wanted.driver});
  return made;
}

Device& AddForeignPort(Machine& machine, unsigned comNumber) {
  return AddPort(machine, nullptr,
                 {.instanceId = Numbered(L"ACPI\\PNP0501\\%u", comNumber),
                  .hardwareId = L"ACPI\\PNP0501",
                  .description = L"Communications Port",
                  .comNumber = comNumber,
                  .configurable = false});
}

bool ComPlaces::Agree() const {
  const bool oneDosDevice = dosDevices.size() == 1 && dosDevices.front() == portName;
  const bool shown = friendlyName.find(L"(" + portName + L")") != std::wstring::npos;
  return !portName.empty() && claimed && oneDosDevice && shown && serialComm == portName;
}

ComPlaces PlacesOf(Machine& machine, const Device& device) {
  const RegistrySandbox& registry = machine.Registry();
  ComPlaces places{.instanceId = device.instanceId};
  places.portName = registry.Text(ParametersKeyOf(device.instanceId), L"PortName").value_or(L"");
  places.friendlyName = registry.Text(EnumKeyOf(device.instanceId), L"FriendlyName").value_or(L"");
  if (device.port) {
    places.dosDevices = machine.DosNames().NamesOf(device.port->kernelDevice);
    // Of two ports on one name, the name leads to the one that came last.
    std::erase_if(places.dosDevices, [&](const std::wstring& name) {
      return machine.DosNames().Target(name) != device.port->kernelDevice;
    });
    places.serialComm = registry.Text(kSerialCommKey, device.port->kernelDevice).value_or(L"");
  }
  places.claimed = machine.ComNames().IsClaimed(ComNumberOf(places.portName));
  places.portsValue = registry.Text(kPortsKey, places.portName + L":").value_or(L"");
  return places;
}

std::vector<ComPlaces> AllComPlaces(Machine& machine) {
  std::vector<ComPlaces> all;
  for (const Device* device : machine.Devices().All()) {
    if (device->port) all.push_back(PlacesOf(machine, *device));
  }
  return all;
}

std::wstring FormatPlaces(const std::vector<ComPlaces>& places) {
  const auto orDash = [](const std::wstring& text) { return text.empty() ? L"-" : text; };
  TextTable table({L"Device", L"PortName", L"Database", L"DOS device", L"SERIALCOMM", L"Ports value",
                   L"Friendly name", L""});
  for (const ComPlaces& one : places) {
    std::wstring dos;
    for (const std::wstring& name : one.dosDevices) dos += (dos.empty() ? L"" : L",") + name;
    table.Add({one.instanceId, orDash(one.portName), one.claimed ? L"taken" : L"free", orDash(dos),
               orDash(one.serialComm), orDash(one.portsValue), one.friendlyName,
               one.Agree() ? L"" : L"<-- disagree"});
  }
  return table.Text();
}

}  // namespace workbench
