#include "config/nbus_parameters.h"

#include "config/parameter_table.h"

namespace {

using Bus = CKdNBusUserModeInterface;
using Row = ParameterRow<Bus>;

// The order is the wire format.
constexpr Row kRows[] = {
    {L"RxFifoSize", &Bus::RxFifoSize, 512},
    {L"TxFifoSize", &Bus::TxFifoSize, 512},
    {L"MaximumBaudRate", &Bus::MaximumBaudRate, 921600},
    {L"MinimumBaudRate", &Bus::MinimumBaudRate, 60},
    {L"PortType", &Bus::PortType, 0},
    {L"SerialPortType", &Bus::SerialPortType, 0},
    {L"InterfaceType", &Bus::InterfaceType, "TCP"},
    {L"AddressToConnect", &Bus::AddressToConnect, 0},
    {L"PortNumber", &Bus::PortNumber, 0},
    {L"ProtocolType", &Bus::ProtocolType, 2},
    {L"ConnectionIdleTimeout", &Bus::ConnectionIdleTimeout, 0},
    {L"ConnectionAttemptTimeout", &Bus::ConnectionAttemptTimeout, 0},
    {L"AutoDetect", &Bus::AutoDetect, 1},
    {L"MACAddress1", &Bus::MACAddress1, 0},
    {L"MACAddress2", &Bus::MACAddress2, 0},
    {L"ServerConfigPort", &Bus::ServerConfigPort, 9000},
    {L"ServerWebPort", &Bus::ServerWebPort, 80},
    {L"CtsSupported", &Bus::CtsSupported, 1},
    {L"RtsSupported", &Bus::RtsSupported, 1},
    {L"DtrSupported", &Bus::DtrSupported, 1},
    {L"DsrSupported", &Bus::DsrSupported, 1},
    {L"DcdSupported", &Bus::DcdSupported, 1},
    {L"RiSupported", &Bus::RiSupported, 1},
    {L"ForceCOMPortConnect", &Bus::ForceCOMPortConnect, 0},
    {L"IgnoreModelChecking", &Bus::IgnoreModelChecking, 0},
    {L"IgnoreForceProtocol", &Bus::IgnoreForceProtocol, 0},
    {L"SerialPortIndex", &Bus::SerialPortIndex, 1},
    {L"EnableCBFC", &Bus::EnableCBFC, 1},
    {L"CBFCInitialCredit", &Bus::CBFCInitialCredit, 4096},
    {L"CBFCInitialNegotiationTimeout", &Bus::CBFCInitialNegotiationTimeout, 500},
    {L"TelnetNegotiationTimeout", &Bus::TelnetNegotiationTimeout, 5000},
    {L"RealTxFifoEmulation", &Bus::RealTxFifoEmulation, 1},
    {L"RealTxFifoEmulationSize", &Bus::RealTxFifoEmulationSize, 16},
    {L"ExtraDelayOnWriteReq", &Bus::ExtraDelayOnWriteReq, 0},
    {L"Model", &Bus::Model, "QX-582"},
};

}  // namespace

CKdNBusUserModeInterface::CKdNBusUserModeInterface() noexcept {
  RegisterParameters<Bus>(*this, *this, kRows);
}

CKdNBusUserModeInterface::~CKdNBusUserModeInterface() {
  // The items point at members that are gone when the base empties itself once more.
  RemoveAll();
}
