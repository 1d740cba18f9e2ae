#include "workbench/rig/sample_rig.h"

#include <array>

namespace workbench {
namespace {

// What the device reports for its four ports, in its own codes.
PortState DeviceStateOf(unsigned number) {
  switch (number) {
    case 1:
      return {.baudRate = 115200, .flowControl = 2, .state = 1};
    case 2:
      return {.baudRate = 9600, .dataBits = 7, .parity = 3, .stopBits = 2, .dsrLine = 0};
    case 3:
      return {.baudRate = 19200, .duplex = 2, .state = 2, .portMode = 1};
    default:
      return {.baudRate = 57600, .parity = 2, .stopBits = 3, .flowControl = 4, .portMode = 2, .ctsLine = 0};
  }
}

struct Setting {
  unsigned port;
  const char* name;
  std::uint32_t value;
};

// What the port driver holds beside its defaults. Other than the device's values, so that an unreachable
// device shows.
constexpr std::array kPortSettings = {
    Setting{1, "Baudrate", 38400}, Setting{1, "FlowControl", 2},   Setting{2, "Baudrate", 4800},
    Setting{2, "Databits", 2},     Setting{2, "Parity", 1},        Setting{2, "EmulateCTSTrue", 1},
    Setting{3, "PortType", 0x4},   Setting{3, "DuplexMode", 1},    Setting{3, "SupportedDuplexModes", 0x3},
    Setting{3, "Stopbits", 2},     Setting{4, "Baudrate", 230400}, Setting{4, "Parity", 4},
    Setting{4, "Stopbits", 1},     Setting{4, "FlowControl", 1},   Setting{4, "EmulateDSRTrue", 1},
};

void SetUpPort(Rig& rig, unsigned number) {
  rig.web.SetPort(number, DeviceStateOf(number));
  ParameterValues& bus = rig.BusSet(number - 1);
  bus.SetNumber("PortNumber", 4000 + number);
  bus.SetNumber("ConnectionAttemptTimeout", 5);
  bus.SetNumber("MACAddress1", 0x0004D3A2);
  bus.SetNumber("MACAddress2", 0x1B70);
  if (number == 3) bus.SetNumber("PortType", 0x4);  // its bit: an RS-422/485 port
  for (const Setting& setting : kPortSettings) {
    if (setting.port == number) rig.PortSet(number - 1).SetNumber(setting.name, setting.value);
  }
}

}  // namespace

SampleRig::SampleRig() : Rig({.comNumbers = {}, .loaded = false}) {
  AddForeignPort(machine, 1);
  AddServer({5, 6, 7, 8});
  for (unsigned number = 1; number <= kPorts; ++number) SetUpPort(*this, number);
}

}  // namespace workbench
