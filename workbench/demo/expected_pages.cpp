#include "workbench/demo/expected_pages.h"

#include "base/resource_ids.h"
#include "workbench/rig/open_sheet.h"

namespace workbench {
namespace {

constexpr int kControls[] = {IDC_PORT_STATE,          IDC_PORT_MODE,   IDC_PORT_BAUD_RATE,
                             IDC_PORT_DATA_BITS,      IDC_PORT_PARITY, IDC_PORT_STOP_BITS,
                             IDC_PORT_FLOW_CONTROL,   IDC_PORT_DUPLEX, IDC_PORT_CTS_ALWAYS_TRUE,
                             IDC_PORT_DSR_ALWAYS_TRUE};

struct Page {
  const wchar_t* shows[std::size(kControls)];
  const wchar_t* changes;
};
constexpr Page kOnline[] = {
    {{L"Connected", L"RS232", L"115200", L"8", L"None", L"1", L"CTS/RTS", L"(hidden)", L"not checked",
      L"not checked"},
     L"Baudrate 38400 -> 115200|Databits 3 -> 0|FlowControl 2 -> 1"},
    {{L"Idle", L"RS232", L"9600", L"7", L"Even", L"2", L"None", L"(hidden)", L"checked", L"checked, greyed"},
     L"Baudrate 4800 -> 9600|Stopbits 0 -> 2|DsrSupported 1 -> 0"},
    {{L"Tunneling", L"RS422/485", L"19200", L"8", L"None", L"1", L"None",
      L"RS485 half-duplex autogating mode", L"checked, greyed", L"checked, greyed"},
     L"DuplexMode 1 -> 2|Baudrate 9600 -> 19200|Databits 3 -> 0|Stopbits 2 -> 0"},
    {{L"Idle", L"RS232/422/485", L"57600", L"8", L"Odd", L"1.5", L"Xon/Xoff", L"(hidden)", L"checked, greyed",
      L"checked"},
     L"Baudrate 230400 -> 57600|Databits 3 -> 1|FlowControl 1 -> 4|CtsSupported 1 -> 0"}};
constexpr Page kOffline[] = {
    {{L"Offline", L"RS232", L"38400", L"8", L"None", L"1", L"DTR/DSR", L"(hidden)", L"not checked",
      L"not checked"},
     L""},
    {{L"Offline", L"RS232", L"4800", L"7", L"Odd", L"1", L"None", L"(hidden)", L"checked", L"not checked"},
     L""},
    {{L"Offline", L"RS422/485", L"9600", L"8", L"None", L"2", L"None", L"RS422 full-duplex mode",
      L"not checked", L"checked, greyed"},
     L""},
    {{L"Offline", L"RS232", L"230400", L"8", L"Space", L"1.5", L"CTS/RTS", L"(hidden)", L"not checked",
      L"checked"},
     L""}};

const Page& PageOf(unsigned port, bool offline) {
  return (offline ? kOffline : kOnline)[port - 1];
}

std::wstring ComNameOf(unsigned port) {
  return L"COM" + std::to_wstring(4 + port);
}

}  // namespace

std::vector<ExpectedControl> ExpectedPortPage(unsigned port, bool offline) {
  std::vector<ExpectedControl> page;
  for (std::size_t at = 0; at < std::size(kControls); ++at)
    page.push_back({kControls[at], PageOf(port, offline).shows[at]});
  return page;
}

std::wstring ExpectedChanges(unsigned port, bool offline) {
  const std::wstring where = L"  Driver of port " + std::to_wstring(port) + L", set 0: ";
  std::wstring text;
  for (std::wstring left = PageOf(port, offline).changes; !left.empty();) {
    const std::size_t end = std::min(left.find(L'|'), left.size());
    text += where + left.substr(0, end) + L"\n";
    left.erase(0, end + 1);
  }
  return text;
}

std::vector<ExpectedControl> ExpectedAdvancedPage(unsigned port, int tab) {
  if (tab == OpenSheet::kDevice) {
    return {{IDC_DEVICE_COM_NUMBER, ComNameOf(port)},    {IDC_DEVICE_INTERFACE_TYPE, L"TCP"},
            {IDC_DEVICE_RX_FIFO_SIZE, L"512 bytes"},     {IDC_DEVICE_TX_FIFO_SIZE, L"512 bytes"},
            {IDC_DEVICE_MAX_BAUD_RATE, L"921600 baud"},  {IDC_DEVICE_HIGH_PERFORMANCE, L"not checked"},
            {IDC_DEVICE_CONNECT_OFFLINE, L"not checked"}};
  }
  if (tab == OpenSheet::kTcpIp) {
    return {{IDC_TCPIP_MAC_ADDRESS, L"04:D3:A2:00:1B:70"},
            {IDC_TCPIP_ADDRESS, L"127.0.0.1"},
            {IDC_TCPIP_PORT_NUMBER, std::to_wstring(4000 + port)},
            {IDC_TCPIP_ATTEMPT_TIMEOUT, L"5"},
            {IDC_TCPIP_IDLE_TIMEOUT, L"(hidden)"},
            {IDC_TCPIP_VERIFICATION, L"checked"}};
  }
  return {{IDC_ABOUT_WEBSITE, L"https://www.keldrin.example/"}};
}

std::wstring ExpectedNamesInUse(unsigned port) {
  std::wstring text = L"COM1 ";
  for (unsigned other = 1; other <= std::size(kOnline); ++other) {
    if (other != port) text += ComNameOf(other) + L" ";
  }
  return text + L"of 255";
}

}  // namespace workbench
