// workbench show-advanced: the sheet behind a port page's "Advanced..." button, compared with what the
// drivers and the host hold.
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include <algorithm>

#include "base/resource_ids.h"
#include "workbench/demo/commands.h"
#include "workbench/demo/control_check.h"
#include "workbench/demo/picture.h"
#include "workbench/demo/report.h"
#include "workbench/rig/page_controls.h"
#include "workbench/rig/page_sheet.h"
#include "workbench/rig/sample_rig.h"
#include "workbench/rig/sheet_visit.h"

namespace workbench {
namespace {

struct Tab {
  const wchar_t* title;
  const char* picture;
};
constexpr Tab kTabs[] = {{L"Port Settings", "advanced-device"},
                         {L"TCP/IP Settings", "advanced-tcp-ip"},
                         {L"About", "advanced-about"}};

// The pictures, and the folder that they are for: "" when none are wanted.
struct Folder {
  std::string name;
  Album album{};

  void Take(HWND sheet, const char* picture) {
    album.Take(sheet, name.empty() ? "" : name + "/" + picture + ".png");
  }
};

// The list opened, from its beginning, with as many lines as there is room for above the sheet's end.
void TakeComList(HWND sheet, HWND page, Folder& folder) {
  constexpr WPARAM kLines = 20;
  if (folder.name.empty()) return;
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
  folder.Take(sheet, "advanced-com-list");
  SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
}

bool LookThrough(const OpenSheet& sheet, unsigned port, Folder& folder) {
  const std::wstring caption = sheet.Caption();
  Print(L"\n" + caption + L"\n");
  // The system puts words of its own around it.
  bool right = caption.find(L"Advanced Settings for COM" + std::to_wstring(4 + port)) != std::wstring::npos &&
               std::ranges::equal(sheet.Tabs(), kTabs, {}, {}, &Tab::title);
  if (!right) Print(L"  DIFFERS: the sheet's caption or its tabs\n");
  for (int tab = 0; tab < static_cast<int>(std::size(kTabs)); ++tab) {
    const HWND page = sheet.Turn(tab);
    std::vector<ControlCheck> checks = CheckControls(page, ExpectedAdvancedPage(port, tab));
    if (tab == OpenSheet::kDevice) {
      checks.push_back({IDC_DEVICE_COM_NUMBER, L"In use in the list",
                        ReadNamesInUse(page, IDC_DEVICE_COM_NUMBER), ExpectedNamesInUse(port)});
    }
    Print(L"\n  [" + std::wstring(kTabs[tab].title) + L"]\n");
    right = ReportChecks(checks, L"Drivers and host say") && right;
    folder.Take(sheet.Window(), kTabs[tab].picture);
    if (tab == OpenSheet::kDevice) TakeComList(sheet.Window(), page, folder);
  }
  return right;
}

// Presses the button and looks through the sheet that comes up.
bool Visit(SampleRig& rig, unsigned port, Folder& folder) {
  const std::wstring caption = CaptionOf(rig.machine, rig.Port(port - 1));
  const PageSheet page(rig, rig.Port(port - 1), {.caption = caption.c_str()});
  const DriverValues before = ValuesOf(rig);
  rig.Boxes().clear();
  bool right = true;
  const SheetVisit visit([&](const OpenSheet& sheet) {
    right = LookThrough(sheet, port, folder);
    sheet.PressCancel();
  });
  page.Click(IDC_PORT_ADVANCED);
  right = visit.Finish() && right;
  // Looking changes nothing and asks nothing.
  return PrintBeside(FormatMessageBoxes(rig.Boxes()) + FormatChanges(before, ValuesOf(rig)), L"") && right;
}

bool Show(unsigned port, Folder& folder) {
  SampleRig rig;
  rig.Load();
  const bool right = Visit(rig, port, folder);
  return EndsWell(rig) && right;
}

}  // namespace

int ShowAdvanced(unsigned port, const std::string& folderName) {
  Folder folder{.name = folderName};
  const bool right = Show(port, folder);
  folder.album.Save();
  Print(right ? L"\nEverything is as the drivers and the host have it.\n"
              : L"\nNot everything is as it should be.\n");
  return right ? 0 : 1;
}

}  // namespace workbench
