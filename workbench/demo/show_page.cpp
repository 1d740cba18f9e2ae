#include "workbench/demo/show_page.h"

#include "workbench/demo/host_report.h"
#include "workbench/demo/page_reading.h"
#include "workbench/demo/text_table.h"
#include "workbench/demo/tip_texts.h"
#include "workbench/rig/page_sheet.h"
#include "workbench/rig/sample_host.h"

namespace workbench {
namespace {

constexpr wchar_t kOfflineText[] =
    L"Cannot load device information data from the device. Device may be offline.";

// The one warning that an unreachable device is good for, and none otherwise.
bool CheckMessageBoxes(const std::vector<MessageBoxRecord>& boxes, bool offline) {
  Print(FormatMessageBoxes(boxes));
  if (!offline) return boxes.empty();
  return boxes.size() == 1 && boxes[0].text == kOfflineText && boxes[0].caption == L"Warning" &&
         (boxes[0].style & (MB_TYPEMASK | MB_ICONMASK)) == (MB_OK | MB_ICONEXCLAMATION);
}

// The page asks for its port's document, once, and for nothing else.
bool CheckRequests(const std::vector<LoggedRequest>& requests, unsigned number, bool offline) {
  for (const LoggedRequest& logged : requests) {
    Print(L"  Request: " + Widen(logged.request.method + " " + logged.request.target) + L" -> " +
          std::to_wstring(logged.status) + L"\n");
  }
  if (offline) return requests.empty();
  return requests.size() == 1 && requests[0].request.target == "/p" + std::to_string(number) &&
         requests[0].status == 200;
}

bool CheckDriver(PortDriver& driver, const PageExpectation& expectation) {
  std::vector<std::string> faults = Differences(expectation.port, driver.Current(kPortSet));
  for (std::string& fault : Differences(expectation.bus, driver.Current(kBusSet)))
    faults.push_back(std::move(fault));
  for (const std::string& fault : faults) Print(L"  DIFFERS, expected -> found: " + Widen(fault) + L"\n");
  return faults.empty();
}

}  // namespace

void ShowPage::Describe(CLI::App& app) {
  app.add_option("--port", port_, "number of the port on the device server; without it, all are shown")
      ->check(CLI::Range(1u, SampleHost::kPorts));
  app.add_flag("--tips", tips_, "print what the tips of the page say");
  app.add_flag("--offline", offline_, "the device server cannot be reached");
  app.add_option("--png", files_, "write a picture of this port's page to this file; may be given repeatedly")
      ->type_name("PORT FILE");
}

int ShowPage::Run() {
  const bool right = ShowAll();
  for (const auto& [file, picture] : pictures_) picture.Save(Widen(file));
  Print(!right     ? L"\nNot everything is as it should be.\n"
        : offline_ ? L"\nEverything is as it should be with the device out of reach.\n"
                   : L"\nEverything is as the device said.\n");
  return right ? 0 : 1;
}

bool ShowPage::ShowAll() {
  SampleHost host;
  if (offline_) host.TakeOffline();
  bool right = true;
  {
    const Dll dll(host.Host());
    const unsigned first = port_ ? port_ : 1;
    const unsigned last = port_ ? first : SampleHost::kPorts;
    for (unsigned number = first; number <= last; ++number) {
      right = ShowPort(host, dll, number) && right;
    }
  }
  return ReportViolations(host) && right;
}

bool ShowPage::ShowPort(SampleHost& host, const Dll& dll, unsigned number) {
  PortDriver& driver = host.Driver(number);
  const DriverValues before = ValuesOf(host);
  const auto said = offline_ ? std::nullopt : std::optional(host.Web().PortAt(number));
  const PageExpectation expectation = ExpectPage(said, driver.Current(kPortSet), driver.Current(kBusSet));
  host.Host().Screen().messageBoxes.clear();
  host.Web().ClearRequests();

  const std::wstring caption = CaptionOf(host.Host(), host.Port(number));
  Print(L"\n" + caption + L"\n");
  PageSheet sheet(host.Host(), dll, host.Port(number), caption);
  sheet.Settle();
  const std::vector<ControlCheck> checks = CheckPage(sheet.Page(), expectation);
  Print(FormatChecks(checks, offline_ ? L"Drivers said" : L"Device said"));
  // They are the same on every port's page.
  if (std::exchange(tips_, false)) Print(L"\n" + FormatTips(sheet.Page()));
  for (const auto& [port, file] : files_) {
    if (port == number) pictures_.emplace_back(file, Picture(sheet.Window()));
  }

  Print(FormatChanges(before, ValuesOf(host)));
  bool right = AllAgree(checks);
  right = CheckDriver(driver, expectation) && right;
  right = CheckRequests(host.Web().Requests(), number, offline_) && right;
  right = CheckMessageBoxes(host.Host().Screen().messageBoxes, offline_) && right;
  return right;
}

}  // namespace workbench
