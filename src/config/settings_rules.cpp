#include "config/settings_rules.h"

#include "config/port_type.h"

namespace {

constexpr std::uint32_t kMostDataBits = 3;
constexpr std::uint32_t kMostParity = 4;
constexpr std::uint32_t kMostStopBits = 2;
constexpr std::uint32_t kFlowControlBits = 0xF;

}  // namespace

void ApplyNetworkInfo(const NetworkInfo& info, CKdNBusUserModeInterface& bus, CVcpParameters& port) noexcept {
  bus.AddressToConnect = info.address;
  bus.PortNumber = info.dataPort;
  bus.ServerConfigPort = info.configPort;
  bus.ServerWebPort = info.webPort;
  bus.MACAddress1 = info.mac1;
  bus.MACAddress2 = info.mac2;
  bus.PortType = info.portType;
  port.DuplexMode = info.duplexMode;

  const bool changesType = info.portType <= 1 && info.portType != port.PortType;
  if (!changesType) return;
  port.PortType = info.portType;
  if (info.portType == 0) {
    port.DuplexMode = 0;
  } else if (info.duplexMode == 0) {
    port.DuplexMode = kDuplexRs422;
  }
}

void ApplyLineSettings(const LineSettings& settings, CVcpParameters& port) noexcept {
  port.Baudrate = settings.baudRate;
  StoreUpTo(port.Databits, settings.dataBits, kMostDataBits);
  StoreUpTo(port.Parity, settings.parity, kMostParity);
  StoreUpTo(port.Stopbits, settings.stopBits, kMostStopBits);
  // Bits above the four are stored along with them: they are the driver's own.
  if (settings.flowControl == 0 || (settings.flowControl & kFlowControlBits) != 0) {
    port.FlowControl = settings.flowControl;
  }
}
