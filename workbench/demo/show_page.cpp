// workbench show-page: a port's page in a real property sheet, compared with what the device said.
#include "workbench/demo/commands.h"
#include "workbench/demo/control_check.h"
#include "workbench/demo/picture.h"
#include "workbench/demo/report.h"
#include "workbench/machine/models/device_text.h"
#include "workbench/rig/page_sheet.h"
#include "workbench/rig/sample_rig.h"

namespace workbench {
namespace {

constexpr wchar_t kOfflineText[] =
    L"Cannot load device information data from the device. Device may be offline.";

using Pictures = std::vector<std::pair<std::string, Picture>>;

// An unreachable device makes the page warn once; nothing else makes it ask or warn.
bool CheckMessageBoxes(const std::vector<MessageBoxRecord>& boxes, bool offline) {
  Print(FormatMessageBoxes(boxes));
  if (!offline) return boxes.empty();
  return boxes.size() == 1 && boxes[0].text == kOfflineText && boxes[0].caption == L"Warning" &&
         (boxes[0].style & (MB_TYPEMASK | MB_ICONMASK)) == (MB_OK | MB_ICONEXCLAMATION);
}

// The page asks for its port's document, once, and for nothing else.
bool CheckRequests(const std::vector<LoggedRequest>& requests, unsigned port, bool offline) {
  for (const LoggedRequest& logged : requests) {
    Print(L"  Request: " + Widen(logged.request.method + " " + logged.request.target) + L" -> " +
          std::to_wstring(logged.status) + L"\n");
  }
  if (offline) return requests.empty();
  return requests.size() == 1 && requests[0].request.target == "/p" + std::to_string(port) &&
         requests[0].status == 200;
}

bool CheckChanges(const std::wstring& changes, const std::wstring& expected) {
  Print(changes);
  if (changes != expected) Print(L"  DIFFERS, the drivers should have changed:\n" + expected);
  return changes == expected;
}

bool ShowPage(SampleRig& rig, const PageOptions& options, unsigned port, Pictures& pictures) {
  const DriverValues before = ValuesOf(rig);
  rig.Boxes().clear();
  rig.web.ClearRequests();

  const std::wstring caption = CaptionOf(rig.machine, rig.Port(port - 1));
  Print(L"\n" + caption + L"\n");
  const PageSheet sheet(rig, rig.Port(port - 1), {.caption = caption.c_str()});
  const std::vector<ControlCheck> checks =
      CheckControls(sheet.Page(), ExpectedPortPage(port, options.offline));
  bool right = ReportChecks(checks, options.offline ? L"Drivers said" : L"Device said");
  // They are the same on every port's page.
  if (options.tips && port == (options.port ? options.port : 1)) PrintTips(sheet.Page());
  for (const auto& [of, file] : options.pictures) {
    if (of == port) pictures.emplace_back(file, Picture(sheet.Window()));
  }
  right = CheckChanges(FormatChanges(before, ValuesOf(rig)), ExpectedChanges(port, options.offline)) && right;
  right = CheckRequests(rig.web.Requests(), port, options.offline) && right;
  return CheckMessageBoxes(rig.Boxes(), options.offline) && right;
}

bool ShowAll(const PageOptions& options, Pictures& pictures) {
  SampleRig rig;
  if (options.offline) rig.web.Stop();
  rig.Load();
  bool right = true;
  const unsigned first = options.port ? options.port : 1;
  const unsigned last = options.port ? first : SampleRig::kPorts;
  for (unsigned port = first; port <= last; ++port) right = ShowPage(rig, options, port, pictures) && right;
  return EndsWell(rig) && right;
}

}  // namespace

int ShowPages(const PageOptions& options) {
  Pictures pictures;
  const bool right = ShowAll(options, pictures);
  for (const auto& [file, picture] : pictures) picture.Save(Widen(file));
  Print(!right            ? L"\nNot everything is as it should be.\n"
        : options.offline ? L"\nEverything is as it should be with the device out of reach.\n"
                          : L"\nEverything is as the device said.\n");
  return right ? 0 : 1;
}

}  // namespace workbench
