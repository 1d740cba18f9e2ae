// The refresh of the port page. Windows only.
#pragma once

#include <windows.h>

#include <cstdint>

#include "base/wide_string.h"
#include "config/nbus_parameters.h"
#include "config/user_mode_config.h"
#include "config/vcp_parameters.h"

// Where the device server was at the last refresh, kept by the page for its link.
struct PortWebAddress {
  CWideString host;              // IPv4 address as text
  std::uint16_t webPort = 0;     // TCP port
  std::uint32_t portNumber = 0;  // the port's number on the device server, from 1
};

// What a refresh works on; all of it is the page's.
struct PortStatusTarget {
  HWND page;  // holds the status controls of resource_ids.h
  CKdUserModeConfig& channel;
  CKdUVcpUserModeInterface& portSet;
  CKdNBusUserModeInterface& busSet;
  PortWebAddress& web;
};

// Reads both parameter sets, fetches the port's status document, fills the status controls, adopts what the
// device server says into the sets, writes both back and sets the check boxes. A device server that does not
// answer is reported in a message box over the page when `showErrors` is set, and shown as "Offline".
// Controls that show the right thing already are not touched, so that a tick of the timer does not flicker.
//
// To be called on the page's thread, which it blocks for the length of the HTTP exchange.
void RefreshPortStatus(const PortStatusTarget& target, bool showErrors);

// The address of the device server's web page for the port.
[[nodiscard]] CWideString PortWebPage(const PortWebAddress& web);
