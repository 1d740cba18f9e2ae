#include "status/port_web.h"

#include "status/address_text.h"

PortWebAddress WebAddressOf(const CKdNBusUserModeInterface& bus) {
  return {Ipv4Text(bus.AddressToConnect), static_cast<std::uint16_t>(bus.ServerWebPort), bus.SerialPortIndex};
}

CWideString StatusDocumentPath(const PortWebAddress& web) {
  return CWideString::Format(L"/p%d", static_cast<std::int32_t>(web.portIndex));
}

CWideString PortWebPage(const PortWebAddress& web) {
  return CWideString::Format(L"http://%s:%d/serialport%d.html", web.host, static_cast<int>(web.webPort),
                             static_cast<std::int32_t>(web.portIndex));
}
