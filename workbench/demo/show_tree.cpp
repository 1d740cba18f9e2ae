#include "workbench/demo/show_tree.h"

#include "workbench/demo/device_list.h"
#include "workbench/demo/host_report.h"
#include "workbench/demo/text_table.h"
#include "workbench/demo/tree_window.h"
#include "workbench/rig/on_screen.h"
#include "workbench/rig/sample_host.h"

namespace workbench {
namespace {

// What has become of the host while a sheet was open.
class SheetReport {
 public:
  SheetReport(SampleHost& host, const Device& device)
      : host_(host), caption_(CaptionOf(host.Host(), device)), before_(ValuesOf(host)) {
    Desktop& screen = host.Host().Screen();
    screen.messageBoxes.clear();
    screen.shellCalls.clear();
    screen.helpCalls.clear();
    host.Web().ClearRequests();
  }

  void PrintNow() const {
    const Desktop& screen = host_.Host().Screen();
    std::wstring text = L"\n" + caption_ + L", closed\n" + FormatMessageBoxes(screen.messageBoxes);
    for (const ShellRecord& call : screen.shellCalls) text += L"  Opened: " + call.file + L"\n";
    for (const HelpRecord& call : screen.helpCalls) text += L"  Help asked for: " + call.topic + L"\n";
    text += L"  Requests to the device server: " + std::to_wstring(host_.Web().Requests().size()) + L"\n";
    const std::wstring changes = FormatChanges(before_, ValuesOf(host_));
    Print(text + (changes.empty() ? L"  The drivers hold what they held.\n" : changes) + L"\n" +
          FormatPlaces(AllComPlaces(host_.Host())));
  }

 private:
  SampleHost& host_;
  std::wstring caption_;
  DriverValues before_;
};

}  // namespace

void ShowTree::Describe(CLI::App& app) {
  app.add_flag(
      "--interactive", interactive_,
      "in a window: double-click a port to open its properties; what changed is printed when they are "
      "closed");
  app.add_option("--png", file_, "write a picture of the window to this file");
}

int ShowTree::Run() {
  const bool right = Show();
  if (picture_) picture_->Save(Widen(file_));
  return right ? 0 : 1;
}

bool ShowTree::Show() {
  SampleHost host;
  Print(FormatDevices(ListDevices(host.Host())));
  if (interactive_ || !file_.empty()) ShowWindow(host);
  return ReportViolations(host);
}

void ShowTree::ShowWindow(SampleHost& host) {
  const Dll dll(host.Host());
  TreeWindow window(host.Host(), dll);
  if (!file_.empty()) {
    PaintNow(window.Window());
    picture_.emplace(window.Window());
  }
  if (!interactive_) return;
  Print(L"\n" + FormatPlaces(AllComPlaces(host.Host())));
  host.Host().Screen().ShowMessageBoxes(true);
  std::optional<SheetReport> report;
  window.opening = [&](const Device& device) { report.emplace(host, device); };
  window.closed = [&](const Device&) { report->PrintNow(); };
  window.RunUntilClosed();
}

}  // namespace workbench
