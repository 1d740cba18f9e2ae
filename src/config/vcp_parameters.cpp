#include "config/vcp_parameters.h"

#include "config/parameter_table.h"

namespace {

using Port = CKdUVcpUserModeInterface;
using Row = ParameterRow<Port>;

// The order is the wire format; it is not the order of the members.
constexpr Row kRows[] = {
    {L"PortType", &Port::PortType, 255},
    {L"MaxBaudRate", &Port::MaxBaudRate, 1000000},
    {L"MinBaudRate", &Port::MinBaudRate, 75},
    {L"DuplexMode", &Port::DuplexMode, 0},
    {L"Baudrate", &Port::Baudrate, 9600},
    {L"Databits", &Port::Databits, 3},
    {L"Parity", &Port::Parity, 0},
    {L"Stopbits", &Port::Stopbits, 0},
    {L"FlowControl", &Port::FlowControl, 0},
    {L"LogLevel", &Port::LogLevel, 0},
    {L"ReceiveTriggerLevel", &Port::ReceiveTriggerLevel, 75},
    {L"TransmitTriggerLevel", &Port::TransmitTriggerLevel, 10},
    {L"FlowControlTriggerLevel", &Port::FlowControlTriggerLevel, 85},
    {L"SupportedBaudRates", &Port::SupportedBaudRates, 0x1007FFFF},
    {L"SupportedParities", &Port::SupportedParities, 0x1F00},
    {L"SupportedDataBits", &Port::SupportedDataBits, 0xF},
    {L"SupportedStopBits", &Port::SupportedStopBits, 0x7},
    {L"SupportedFlowControls", &Port::SupportedFlowControls, 0xF},
    {L"SupportedDuplexModes", &Port::SupportedDuplexModes, 0},
    // Kept on purpose: OverridBaudRates
    {L"OverridBaudRates", &Port::OverridBaudRates, 0},
    {L"OverrideDataBits", &Port::OverrideDataBits, 0},
    {L"OverrideParity", &Port::OverrideParity, 0},
    {L"OverrideStopbits", &Port::OverrideStopbits, 0},
    {L"OverrideFlowControl", &Port::OverrideFlowControl, 0},
    {L"EmulateCTSTrue", &Port::EmulateCTSTrue, 0},
    {L"EmulateDSRTrue", &Port::EmulateDSRTrue, 0},
    {L"422485CtsTrue", &Port::_422485CtsTrue, 0},
    {L"CtsSupported", &Port::CtsSupported, 1},
    {L"RtsSupported", &Port::RtsSupported, 1},
    {L"DtrSupported", &Port::DtrSupported, 1},
    {L"DsrSupported", &Port::DsrSupported, 1},
    {L"DcdSupported", &Port::DcdSupported, 1},
    {L"RiSupported", &Port::RiSupported, 1},
};

}  // namespace

CKdUVcpUserModeInterface::CKdUVcpUserModeInterface() noexcept {
  RegisterParameters<Port>(*this, *this, kRows);
}

CKdUVcpUserModeInterface::~CKdUVcpUserModeInterface() {
  // The items point at members that are gone when the base empties itself once more.
  RemoveAll();
}
