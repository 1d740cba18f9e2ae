#include "workbench/demo/show_advanced.h"

#include <commctrl.h>
#include <prsht.h>

#include <algorithm>

#include "base/resource_ids.h"
#include "workbench/demo/advanced_expectation.h"
#include "workbench/demo/control_check.h"
#include "workbench/demo/host_report.h"
#include "workbench/demo/text_table.h"
#include "workbench/rig/on_screen.h"
#include "workbench/rig/page_controls.h"
#include "workbench/rig/page_sheet.h"
#include "workbench/rig/sample_host.h"
#include "workbench/rig/sheet_visit.h"

namespace workbench {
namespace {

struct Tab {
  const wchar_t* title;
  const wchar_t* picture;
};
constexpr Tab kTabs[] = {{L"Port Settings", L"advanced-device"},
                         {L"TCP/IP Settings", L"advanced-tcp-ip"},
                         {L"About", L"advanced-about"}};

// The tabs, in their order, and no others.
bool CheckTabs(const OpenSheet& sheet) {
  const bool right = std::ranges::equal(sheet.Tabs(), kTabs, {}, {}, &Tab::title);
  if (!right) Print(L"  DIFFERS: the sheet's tabs\n");
  return right;
}

std::vector<ControlCheck> CheckTab(SampleHost& host, unsigned port, int tab, HWND page) {
  const ParameterValues& bus = host.Driver(port).Current(kBusSet);
  if (tab == OpenSheet::kTcpIp) return CheckControls(page, ExpectTcpIpPage(bus));
  if (tab != OpenSheet::kDevice) return CheckControls(page, ExpectAboutPage());
  const std::wstring name = PlacesOf(host.Host(), host.Port(port)).portName;
  std::vector<ControlCheck> checks = CheckControls(page, ExpectDevicePage(bus, name));
  checks.push_back({IDC_DEVICE_COM_NUMBER, L"In use in the list",
                    ReadNumbersInUse(page, IDC_DEVICE_COM_NUMBER),
                    NumbersInUseInWords(ExpectNamesInUse(host.Host().ComNames().Claimed(), name), 255)});
  return checks;
}

}  // namespace

void ShowAdvanced::Describe(CLI::App& app) {
  app.add_option("--port", port_, "number of the port on the device server")
      ->check(CLI::Range(1u, SampleHost::kPorts))
      ->capture_default_str();
  app.add_option("--pictures", folder_, "write a picture of each page to this folder")
      ->check(CLI::ExistingDirectory);
}

int ShowAdvanced::Run() {
  const bool right = Show();
  for (const auto& [name, picture] : pictures_) picture.Save(Widen(folder_) + L"/" + name + L".png");
  Print(right ? L"\nEverything is as the drivers and the host have it.\n"
              : L"\nNot everything is as it should be.\n");
  return right ? 0 : 1;
}

bool ShowAdvanced::Show() {
  SampleHost host;
  bool right = true;
  {
    const Dll dll(host.Host());
    const PageSheet sheet(host.Host(), dll, host.Port(port_), CaptionOf(host.Host(), host.Port(port_)));
    sheet.Settle();
    right = Visit(host, sheet.Page());
  }
  return ReportViolations(host) && right;
}

bool ShowAdvanced::Visit(SampleHost& host, HWND portPage) {
  const DriverValues before = ValuesOf(host);
  host.Host().Screen().messageBoxes.clear();
  bool right = true;
  const SheetVisit visit([&](const OpenSheet& sheet) {
    right = LookThrough(host, sheet);
    sheet.PressCancel();
  });
  Click(portPage, IDC_PORT_ADVANCED);
  right = visit.Finish() && right;
  const std::wstring unwanted =
      FormatMessageBoxes(host.Host().Screen().messageBoxes) + FormatChanges(before, ValuesOf(host));
  if (!unwanted.empty()) Print(L"  DIFFERS: looking changes nothing and asks nothing\n" + unwanted);
  return right && unwanted.empty();
}

bool ShowAdvanced::LookThrough(SampleHost& host, const OpenSheet& sheet) {
  const std::wstring caption = sheet.Caption();
  const std::wstring name = PlacesOf(host.Host(), host.Port(port_)).portName;
  Print(L"\n" + caption + L"\n");
  // The system puts words of its own around it.
  bool right = caption.find(L"Advanced Settings for " + name) != std::wstring::npos;
  if (!right) Print(L"  DIFFERS: the caption is not that of " + name + L"\n");
  right = CheckTabs(sheet) && right;
  for (int tab = 0; tab < static_cast<int>(std::size(kTabs)); ++tab) {
    const HWND page = sheet.Turn(tab);
    const std::vector<ControlCheck> checks = CheckTab(host, port_, tab, page);
    Print(L"\n  [" + std::wstring(kTabs[tab].title) + L"]\n" + FormatChecks(checks, L"Drivers and host say"));
    right = AllAgree(checks) && right;
    Photograph(sheet.Window(), kTabs[tab].picture);
    if (tab == OpenSheet::kDevice) PhotographComList(sheet.Window(), page);
  }
  return right;
}

void ShowAdvanced::Photograph(HWND sheet, const wchar_t* name) {
  if (folder_.empty()) return;
  PaintNow(sheet);
  pictures_.emplace_back(name, Picture(sheet));
}

// The list opened, from its beginning, with as many lines as there is room for above the sheet's end.
void ShowAdvanced::PhotographComList(HWND sheet, HWND page) {
  constexpr WPARAM kLines = 20;
  if (folder_.empty()) return;
  const HWND combo = GetDlgItem(page, IDC_DEVICE_COM_NUMBER);
  COMBOBOXINFO parts{};
  parts.cbSize = sizeof parts;
  SetCursorPos(0, 0);  // the line under the mouse would be marked
  SendMessageW(combo, CB_SETMINVISIBLE, kLines, 0);
  SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
  PaintNow(sheet);
  if (GetComboBoxInfo(combo, &parts)) {
    SendMessageW(parts.hwndList, LB_SETTOPINDEX, 0, 0);
    PaintNow(parts.hwndList);
  }
  Photograph(sheet, L"advanced-com-list");
  SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
}

}  // namespace workbench
