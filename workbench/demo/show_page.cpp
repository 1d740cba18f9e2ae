// workbench show-page: a port's page in a real property sheet, compared with what the device said.
#include "workbench/demo/commands.h"
#include "workbench/demo/control_check.h"
#include "workbench/demo/picture.h"
#include "workbench/demo/report.h"
#include "workbench/rig/page_sheet.h"
#include "workbench/rig/sample_rig.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

// An unreachable device makes the page warn once; nothing else makes it ask or warn.
constexpr wchar_t kOfflineWarning[] =
    L"  Message box \"Warning\" (exclamation): "
    L"Cannot load device information data from the device. Device may be offline. -> OK\n";

std::wstring FormatRequests(const std::vector<LoggedRequest>& requests) {
  std::wstring text;
  for (const LoggedRequest& logged : requests) {
    text += L"  Request: " + Widen(logged.request.method + " " + logged.request.target) + L" -> " +
            std::to_wstring(logged.status) + L"\n";
  }
  return text;
}

bool ShowPage(SampleRig& rig, const PageOptions& options, unsigned port, Album& album) {
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
    if (of == port) album.Take(sheet.Window(), file);
  }
  right = PrintBeside(FormatChanges(before, ValuesOf(rig)), ExpectedChanges(port, options.offline)) && right;
  // The page asks for its port's document, once, and for nothing else.
  const std::wstring request = L"  Request: GET /p" + std::to_wstring(port) + L" -> 200\n";
  right = PrintBeside(FormatRequests(rig.web.Requests()), options.offline ? L"" : request) && right;
  return PrintBeside(FormatMessageBoxes(rig.Boxes()), options.offline ? kOfflineWarning : L"") && right;
}

bool ShowAll(const PageOptions& options, Album& album) {
  SampleRig rig;
  if (options.offline) rig.web.Stop();
  rig.Load();
  bool right = true;
  const unsigned first = options.port ? options.port : 1;
  const unsigned last = options.port ? first : SampleRig::kPorts;
  for (unsigned port = first; port <= last; ++port) right = ShowPage(rig, options, port, album) && right;
  return EndsWell(rig) && right;
}

}  // namespace

int ShowPages(const PageOptions& options) {
  Album album;
  const bool right = ShowAll(options, album);
  album.Save();
  Print(!right            ? L"\nNot everything is as it should be.\n"
        : options.offline ? L"\nEverything is as it should be with the device out of reach.\n"
                          : L"\nEverything is as the device said.\n");
  return right ? 0 : 1;
}

}  // namespace workbench
