/* The parameter sets of a port's drivers, as the drivers' own manual lists them: names, in the order of the
   streams, and what they are before anybody has written them. For the kernel driver and the simulated one.

   Deliberately apart from the product's tables: a slip in either one shows as a difference. */
#ifndef KD_PARAMETER_LAYOUT_H
#define KD_PARAMETER_LAYOUT_H

#include <stddef.h>
#include <stdint.h>

struct kd_parameter {
  const char* name;
  uint32_t number;
  const char* text; /* NULL: it is the number */
};

/* Kept on purpose: OverridBaudRates */
static const struct kd_parameter kd_port_layout[] = {
    {"PortType", 0, NULL},
    {"MaxBaudRate", 921600, NULL},
    {"MinBaudRate", 75, NULL},
    {"DuplexMode", 0, NULL},
    {"Baudrate", 9600, NULL},
    {"Databits", 3, NULL},
    {"Parity", 0, NULL},
    {"Stopbits", 0, NULL},
    {"FlowControl", 0, NULL},
    {"LogLevel", 0, NULL},
    {"ReceiveTriggerLevel", 75, NULL},
    {"TransmitTriggerLevel", 10, NULL},
    {"FlowControlTriggerLevel", 85, NULL},
    {"SupportedBaudRates", 0x1007FFFF, NULL},
    {"SupportedParities", 0x1F00, NULL},
    {"SupportedDataBits", 0xF, NULL},
    {"SupportedStopBits", 0x7, NULL},
    {"SupportedFlowControls", 0xF, NULL},
    {"SupportedDuplexModes", 0x3, NULL},
    {"OverridBaudRates", 0, NULL},
    {"OverrideDataBits", 0, NULL},
    {"OverrideParity", 0, NULL},
    {"OverrideStopbits", 0, NULL},
    {"OverrideFlowControl", 0, NULL},
    {"EmulateCTSTrue", 0, NULL},
    {"EmulateDSRTrue", 0, NULL},
    {"422485CtsTrue", 0, NULL},
    {"CtsSupported", 1, NULL},
    {"RtsSupported", 1, NULL},
    {"DtrSupported", 1, NULL},
    {"DsrSupported", 1, NULL},
    {"DcdSupported", 1, NULL},
    {"RiSupported", 1, NULL},
};

static const struct kd_parameter kd_bus_layout[] = {
    {"RxFifoSize", 512, NULL},
    {"TxFifoSize", 512, NULL},
    {"MaximumBaudRate", 921600, NULL},
    {"MinimumBaudRate", 60, NULL},
    {"PortType", 0, NULL},
    {"SerialPortType", 0, NULL},
    {"InterfaceType", 0, "TCP"},
    {"AddressToConnect", 0, NULL},
    {"PortNumber", 0, NULL},
    {"ProtocolType", 2, NULL},
    {"ConnectionIdleTimeout", 0, NULL},
    {"ConnectionAttemptTimeout", 0, NULL},
    {"AutoDetect", 1, NULL},
    {"MACAddress1", 0, NULL},
    {"MACAddress2", 0, NULL},
    {"ServerConfigPort", 9000, NULL},
    {"ServerWebPort", 80, NULL},
    {"CtsSupported", 1, NULL},
    {"RtsSupported", 1, NULL},
    {"DtrSupported", 1, NULL},
    {"DsrSupported", 1, NULL},
    {"DcdSupported", 1, NULL},
    {"RiSupported", 1, NULL},
    {"ForceCOMPortConnect", 0, NULL},
    {"IgnoreModelChecking", 0, NULL},
    {"IgnoreForceProtocol", 0, NULL},
    {"SerialPortIndex", 1, NULL},
    {"EnableCBFC", 1, NULL},
    {"CBFCInitialCredit", 4096, NULL},
    {"CBFCInitialNegotiationTimeout", 500, NULL},
    {"TelnetNegotiationTimeout", 5000, NULL},
    {"RealTxFifoEmulation", 1, NULL},
    {"RealTxFifoEmulationSize", 16, NULL},
    {"ExtraDelayOnWriteReq", 0, NULL},
    {"Model", 0, "QX-582"},
};

#endif
