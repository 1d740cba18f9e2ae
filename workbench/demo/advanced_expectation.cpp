#include "workbench/demo/advanced_expectation.h"

#include <cstdio>

#include "base/product.h"
#include "base/resource_ids.h"
#include "workbench/demo/control_check.h"

namespace workbench {
namespace {

constexpr unsigned kLastNumber = 255;  // of the list

std::wstring Wide(const std::string& text) {
  return std::wstring(text.begin(), text.end());
}

std::wstring AddressText(std::uint32_t address) {
  std::wstring text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    text += std::to_wstring((address >> shift) & 0xFF) + (shift > 0 ? L"." : L"");
  }
  return text;
}

// Three bytes of the MAC address in each of the two numbers, the highest byte of a number unused.
std::wstring MacText(std::uint32_t front, std::uint32_t back) {
  const std::uint64_t mac = (std::uint64_t{front & 0xFFFFFF} << 24) | (back & 0xFFFFFF);
  std::wstring text;
  for (int shift = 40; shift >= 0; shift -= 8) {
    wchar_t byte[4];
    std::swprintf(byte, 4, L"%02X", static_cast<unsigned>((mac >> shift) & 0xFF));
    text += byte + std::wstring(shift > 0 ? L":" : L"");
  }
  return text;
}

}  // namespace

std::vector<ExpectedControl> ExpectDevicePage(const ParameterValues& bus, const std::wstring& comName) {
  const auto number = [&bus](const char* name) { return std::to_wstring(bus.Number(name)); };
  return {
      {IDC_DEVICE_COM_NUMBER, comName},
      {IDC_DEVICE_INTERFACE_TYPE, Wide(bus.Text("InterfaceType"))},
      {IDC_DEVICE_RX_FIFO_SIZE, number("RxFifoSize") + L" bytes"},
      {IDC_DEVICE_TX_FIFO_SIZE, number("TxFifoSize") + L" bytes"},
      {IDC_DEVICE_MAX_BAUD_RATE, number("MaximumBaudRate") + L" baud"},
      // The driver's switch makes a port faithful and slow.
      {IDC_DEVICE_HIGH_PERFORMANCE, CheckBoxInWords(bus.Number("RealTxFifoEmulation") == 0)},
      {IDC_DEVICE_CONNECT_OFFLINE, CheckBoxInWords(bus.Number("ForceCOMPortConnect") != 0)},
  };
}

std::vector<ExpectedControl> ExpectTcpIpPage(const ParameterValues& bus) {
  // The driver's switches say what it leaves out.
  const bool verifies = bus.Number("IgnoreModelChecking") == 0 || bus.Number("IgnoreForceProtocol") == 0;
  return {
      {IDC_TCPIP_MAC_ADDRESS, MacText(bus.Number("MACAddress1"), bus.Number("MACAddress2"))},
      {IDC_TCPIP_ADDRESS, AddressText(bus.Number("AddressToConnect"))},
      {IDC_TCPIP_PORT_NUMBER, std::to_wstring(bus.Number("PortNumber"))},
      {IDC_TCPIP_ATTEMPT_TIMEOUT, std::to_wstring(bus.Number("ConnectionAttemptTimeout"))},
      {IDC_TCPIP_IDLE_TIMEOUT, L"(hidden)"},
      {IDC_TCPIP_VERIFICATION, CheckBoxInWords(verifies)},
  };
}

std::vector<ExpectedControl> ExpectAboutPage() {
  return {{IDC_ABOUT_WEBSITE, Wide(KD_WEB_ADDRESS)}};
}

std::vector<std::wstring> ExpectNamesInUse(const std::vector<unsigned long>& claimed,
                                           const std::wstring& comName) {
  std::vector<std::wstring> names;
  for (const unsigned long number : claimed) {
    const std::wstring name = L"COM" + std::to_wstring(number);
    if (number <= kLastNumber && name != comName) names.push_back(name);
  }
  return names;
}

}  // namespace workbench
