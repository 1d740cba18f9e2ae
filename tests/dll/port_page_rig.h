// A host with one device server of two ports, and a property sheet with a port's page, as Device Manager
// makes it. For the tests of the port page.
#pragma once

#include "workbench/device_server/http_device_server.h"

#include <commctrl.h>
#include <prsht.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "workbench/machine/machine.h"
#include "workbench/simulated_driver/port_driver.h"

// The driver of a port whose device server is `web`; ports are counted from 1.
void PointAt(workbench::PortDriver& driver, const workbench::HttpDeviceServer& web, unsigned port);

// The host. Port 1 is COM7 (the one that tests look at), port 2 is COM8. Both drivers point at the HTTP
// server, which runs and knows both ports.
class PortPageRig {
 public:
  PortPageRig();

  workbench::HttpDeviceServer web;
  std::array<workbench::PortDriver, 2> drivers;  // outlive the machine
  workbench::Machine machine;
  workbench::DeviceServer server;
  std::unique_ptr<workbench::Dll> dll;

  [[nodiscard]] workbench::Device& Port(unsigned index = 0) { return *server.ports.at(index); }
  [[nodiscard]] workbench::PortDriver& Driver(unsigned index = 0) { return drivers.at(index); }
  // The current values of the driver of port 1.
  [[nodiscard]] workbench::ParameterValues& PortSet() { return drivers[0].Current(workbench::kPortSet); }
  [[nodiscard]] workbench::ParameterValues& BusSet() { return drivers[0].Current(workbench::kBusSet); }
  [[nodiscard]] std::vector<workbench::MessageBoxRecord>& Boxes() { return machine.Screen().messageBoxes; }
  // What the DLL and the drivers found wrong, handles of the DLL that are open, and refused requests.
  [[nodiscard]] std::vector<std::string> Complaints();
};

// The page's handle, from the export; null when it adds none.
class PageRequest {
 public:
  PageRequest(workbench::Machine& machine, const workbench::Dll& dll, workbench::Device& port,
              DWORD request = SPPSR_ENUM_ADV_DEVICE_PROPERTIES, bool accept = true);
  PageRequest(PortPageRig& rig, unsigned port, DWORD request = SPPSR_ENUM_ADV_DEVICE_PROPERTIES,
              bool accept = true)
      : PageRequest(rig.machine, *rig.dll, rig.Port(port), request, accept) {}

  BOOL result = FALSE;
  HPROPSHEETPAGE page = nullptr;
  unsigned offered = 0;  // how often the callback was called

 private:
  static BOOL CALLBACK Add(HPROPSHEETPAGE page, LPARAM lParam);
  bool accept_;
  workbench::DeviceElement element_;
};

// Whether a sheet is painted when it comes up. That takes longer than all the rest of it.
enum class Painting { Now, WhenUncovered };

// A modeless sheet with the page of a port. Closes as the Cancel button does. Construction throws
// std::runtime_error when the export says that it adds no page.
class PortSheet {
 public:
  PortSheet(workbench::Machine& machine, const workbench::Dll& dll, workbench::Device& port,
            Painting painting = Painting::Now);
  explicit PortSheet(PortPageRig& rig, unsigned port = 0)
      : PortSheet(rig.machine, *rig.dll, rig.Port(port)) {}
  ~PortSheet();
  PortSheet(const PortSheet&) = delete;
  PortSheet& operator=(const PortSheet&) = delete;

  [[nodiscard]] HWND Window() const { return sheet_; }
  [[nodiscard]] HWND Page() const { return page_; }
  [[nodiscard]] HWND Control(int id) const { return GetDlgItem(page_, id); }

  [[nodiscard]] std::wstring Text(int id) const;
  [[nodiscard]] bool IsShown(int id) const;
  // A check box and its label in words: "checked", "clear", with "disabled" and "label disabled" behind it.
  [[nodiscard]] std::string Box(int box, int label) const;
  // As a click of the user: a disabled control takes none.
  void Click(int id) const;
  void Check(int id, bool check) const;

  // Presses OK; true when the sheet has ended (and is destroyed).
  bool PressOk();
  void Close();

 private:
  PageRequest request_;
  HWND sheet_ = nullptr;
  HWND page_ = nullptr;
};

// The tip that a page gives for a control, or for itself; "" when it has none.
[[nodiscard]] std::wstring TipOf(HWND page, HWND tool);
// What F1 on a control sends.
void AskForHelp(HWND page, int control, int contextType = HELPINFO_WINDOW);

// Lets the calling thread handle its messages until there are none or `milliseconds` have passed.
void PumpMessages(DWORD milliseconds = 0);
