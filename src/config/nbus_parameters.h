// The parameters of one network-attached port, as the network bus driver sees them. Portable.
#pragma once

#include <cstdint>

#include "base/wide_string.h"
#include "config/information_set.h"

// The information set of the network bus driver, set selector 1: 33 numbers and two texts, 142 bytes on
// the wire while both texts are empty. The numbers are 0 until the driver has been asked.
//
// The members carry the names that the driver registers them under. A value is what the driver holds, whether
// the pages show it or not: the whole set is read and the whole set written back.
class CKdNBusUserModeInterface : public CSsInformationSet {
 public:
  static constexpr std::uint32_t kSelector = 1;

  CKdNBusUserModeInterface() noexcept;
  ~CKdNBusUserModeInterface() override;

  // The port's hardware, for information.
  std::uint32_t RxFifoSize = 0;  // bytes, as TxFifoSize
  std::uint32_t TxFifoSize = 0;
  std::uint32_t MaximumBaudRate = 0;  // bits per second, as MinimumBaudRate
  std::uint32_t MinimumBaudRate = 0;
  std::uint32_t PortType = 0;  // serial interface type, or a mask with one bit for each RS-422/485 port
  std::uint32_t SerialPortType = 0;
  CWideString InterfaceType;  // how the device server is connected
  // The connection to the device server.
  std::uint32_t AddressToConnect = 0;  // the device server's IPv4 address
  std::uint32_t PortNumber = 0;        // TCP port of the serial port's data
  std::uint32_t ProtocolType = 0;
  std::uint32_t ConnectionIdleTimeout = 0;     // seconds
  std::uint32_t ConnectionAttemptTimeout = 0;  // seconds
  std::uint32_t AutoDetect = 0;
  std::uint32_t MACAddress1 = 0;  // the hardware address, three bytes in each half (MacText)
  std::uint32_t MACAddress2 = 0;
  std::uint32_t ServerConfigPort = 0;
  std::uint32_t ServerWebPort = 0;  // TCP port of the device server's HTTP service
  // 1 where the port has the modem line.
  std::uint32_t CtsSupported = 0;
  std::uint32_t RtsSupported = 0;
  std::uint32_t DtrSupported = 0;
  std::uint32_t DsrSupported = 0;
  std::uint32_t DcdSupported = 0;
  std::uint32_t RiSupported = 0;
  std::uint32_t ForceCOMPortConnect = 0;  // 1: the port can be opened while its device server is offline
  // 1: the connection is not verified in this respect.
  std::uint32_t IgnoreModelChecking = 0;
  std::uint32_t IgnoreForceProtocol = 0;
  std::uint32_t SerialPortIndex = 0;  // which port of its device server this is, from 1
  std::uint32_t EnableCBFC = 0;
  std::uint32_t CBFCInitialCredit = 0;
  std::uint32_t CBFCInitialNegotiationTimeout = 0;
  std::uint32_t TelnetNegotiationTimeout = 0;
  std::uint32_t RealTxFifoEmulation = 0;  // 0: "High Performance"
  std::uint32_t RealTxFifoEmulationSize = 0;
  std::uint32_t ExtraDelayOnWriteReq = 0;
  CWideString Model;  // the device server's model
};
