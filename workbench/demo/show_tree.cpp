// workbench tree: the sample computer's devices, printed or in a window to work with.
#include <optional>

#include "workbench/demo/commands.h"
#include "workbench/demo/picture.h"
#include "workbench/demo/report.h"
#include "workbench/demo/tree_window.h"
#include "workbench/rig/sample_rig.h"

namespace workbench {
namespace {

// What has become of the computer while a sheet was open.
class SheetReport {
 public:
  SheetReport(Rig& rig, const Device& device)
      : rig_(rig), caption_(CaptionOf(rig.machine, device)), before_(ValuesOf(rig)) {
    Desktop& screen = rig.machine.Screen();
    screen.messageBoxes.clear();
    screen.shellCalls.clear();
    screen.helpCalls.clear();
    rig.web.ClearRequests();
  }

  void PrintNow() const {
    const Desktop& screen = rig_.machine.Screen();
    std::wstring text = L"\n" + caption_ + L", closed\n" + FormatMessageBoxes(screen.messageBoxes);
    for (const ShellRecord& call : screen.shellCalls) text += L"  Opened: " + call.file + L"\n";
    for (const HelpRecord& call : screen.helpCalls) text += L"  Help asked for: " + call.topic + L"\n";
    text += L"  Requests to the device server: " + std::to_wstring(rig_.web.Requests().size()) + L"\n";
    const std::wstring changes = FormatChanges(before_, ValuesOf(rig_));
    Print(text + (changes.empty() ? L"  The drivers hold what they held.\n" : changes) + L"\n" +
          FormatPlaces(AllComPlaces(rig_.machine)));
  }

 private:
  Rig& rig_;
  std::wstring caption_;
  DriverValues before_;
};

void WorkInWindow(Rig& rig, TreeWindow& window) {
  Print(L"\n" + FormatPlaces(AllComPlaces(rig.machine)));
  rig.machine.Screen().ShowMessageBoxes(true);
  std::optional<SheetReport> report;
  window.opening = [&](const Device& device) { report.emplace(rig, device); };
  window.closed = [&](const Device&) { report->PrintNow(); };
  window.RunUntilClosed();
}

bool Show(bool interactive, const std::string& picture, Album& album) {
  SampleRig rig;
  Print(FormatDevices(rig.machine));
  if (interactive || !picture.empty()) {
    rig.Load();
    TreeWindow window(rig);
    album.Take(window.Window(), picture);
    if (interactive) WorkInWindow(rig, window);
  }
  return EndsWell(rig);
}

}  // namespace

int ShowTree(bool interactive, const std::string& picture) {
  Album album;
  const bool right = Show(interactive, picture, album);
  album.Save();
  return right ? 0 : 1;
}

}  // namespace workbench
