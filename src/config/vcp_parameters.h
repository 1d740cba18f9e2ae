// The parameters of one virtual COM port, as the port driver sees them. Portable.
//
// They are data: the classes check nothing. Which values the pages and the update exports accept stands with
// their rules (settings_rules.h, ui/*_rules.h).
#pragma once

#include <cstdint>

#include "config/information_set.h"

// What makes a port accept settings and lines that it cannot carry out. The members carry the names that the
// driver registers them under. Kept on purpose: OverridBaudRates
class CVCPEmulation {
 public:
  virtual ~CVCPEmulation() = default;

  // Non-zero: the port's configured value is used, even when an application asks for another.
  std::uint32_t OverridBaudRates = 0;
  std::uint32_t OverrideStopbits = 0;
  std::uint32_t OverrideParity = 0;
  std::uint32_t OverrideDataBits = 0;
  std::uint32_t OverrideFlowControl = 0;
  // Non-zero: applications always see the line asserted.
  std::uint32_t EmulateCTSTrue = 0;
  std::uint32_t EmulateDSRTrue = 0;
};

// The values are those that hold until the driver has been asked. They are not the defaults that are
// registered with the parameters: a port that nobody has described yet is taken to support everything.
class CVcpParameters : public CVCPEmulation {
 public:
  static constexpr std::uint32_t kUnknown = 0xFFFFFFFF;

  std::uint32_t PortType = 0;  // serial interface type, or a mask with one bit for each RS-422/485 port
  std::uint32_t MinBaudRate = 60;
  std::uint32_t MaxBaudRate = 921600;
  std::uint32_t DuplexMode = 0;  // 0 none, kDuplexRs422, kDuplexRs485
  // The parameter 422485CtsTrue, CTS always seen asserted on RS-422/485. No C++ name begins with a digit.
  std::uint32_t _422485CtsTrue = 0;
  std::uint32_t Baudrate = 0;     // bits per second
  std::uint32_t Databits = 0;     // 0 to 3 for 5 to 8
  std::uint32_t Parity = 0;       // 0 to 4 for none, odd, even, mark, space
  std::uint32_t Stopbits = 0;     // 0 to 2 for 1, 1.5, 2
  std::uint32_t FlowControl = 1;  // bits: 0 none, 1 CTS/RTS, 2 DTR/DSR, 4 Xon/Xoff
  // Nothing in user mode uses the three trigger levels; they are read and written back.
  std::uint32_t ReceiveTriggerLevel = kUnknown;
  std::uint32_t TransmitTriggerLevel = kUnknown;
  std::uint32_t FlowControlTriggerLevel = kUnknown;
  // Capability masks, with the bits of COMMPROP.
  std::uint32_t SupportedBaudRates = kUnknown;
  std::uint32_t SupportedParities = kUnknown;
  std::uint32_t SupportedDataBits = kUnknown;
  std::uint32_t SupportedStopBits = kUnknown;
  std::uint32_t SupportedFlowControls = kUnknown;
  std::uint32_t SupportedDuplexModes = 255;
  std::uint32_t LogLevel = 0;
  // 1 where the port has the modem line, 0 where not; others count as 1.
  std::uint32_t CtsSupported = 1;
  std::uint32_t RtsSupported = 1;
  std::uint32_t DtrSupported = 1;
  std::uint32_t DsrSupported = 1;
  std::uint32_t DcdSupported = 1;
  std::uint32_t RiSupported = 1;
};

// The information set of the port driver, set selector 0: 33 numbers, 132 bytes on the wire. Its parameters
// are its own members, so it can be neither copied nor moved.
class CKdUVcpUserModeInterface : public CSsInformationSet, public CVcpParameters {
 public:
  static constexpr std::uint32_t kSelector = 0;

  CKdUVcpUserModeInterface() noexcept;
  ~CKdUVcpUserModeInterface() override;
};
