#include "kdport/model/parameters.h"

namespace KdPort {

CFieldValues FieldsOf(const CVcpParameters* port, const CKdNBusUserModeInterface* bus) {
  CFieldValues values;
  if (port != nullptr) {
    values[Field::Baud] = port->Baudrate;
    values[Field::DataBits] = port->Databits;
    values[Field::Parity] = port->Parity;
    values[Field::StopBits] = port->Stopbits;
    values[Field::FlowControl] = port->FlowControl;
  }
  if (bus != nullptr) {
    values[Field::Address] = bus->AddressToConnect;
    values[Field::DataPort] = bus->PortNumber;
    values[Field::ConfigPort] = bus->ServerConfigPort;
    values[Field::WebPort] = bus->ServerWebPort;
  }
  return values;
}

LineSettings SettingsWith(const CVcpParameters& port, const CFieldValues& changes) {
  return {.baudRate = changes[Field::Baud].value_or(port.Baudrate),
          .dataBits = changes[Field::DataBits].value_or(port.Databits),
          .parity = changes[Field::Parity].value_or(port.Parity),
          .stopBits = changes[Field::StopBits].value_or(port.Stopbits),
          .flowControl = changes[Field::FlowControl].value_or(port.FlowControl)};
}

NetworkInfo NetworkWith(const CVcpParameters& port, const CKdNBusUserModeInterface& bus,
                        const CFieldValues& changes) {
  return {.address = changes[Field::Address].value_or(bus.AddressToConnect),
          .dataPort = changes[Field::DataPort].value_or(bus.PortNumber),
          .configPort = changes[Field::ConfigPort].value_or(bus.ServerConfigPort),
          .webPort = changes[Field::WebPort].value_or(bus.ServerWebPort),
          .mac1 = bus.MACAddress1,
          .mac2 = bus.MACAddress2,
          .duplexMode = port.DuplexMode,
          .portType = bus.PortType};
}

}  // namespace KdPort
