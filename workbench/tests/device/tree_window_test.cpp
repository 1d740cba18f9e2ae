// The stand-in for Device Manager, worked by keyboard.
#include "workbench/demo/tree_window.h"

#include <gmock/gmock.h>
#include <prsht.h>

#include "base/resource_ids.h"
#include "workbench/rig/page_controls.h"
#include "workbench/rig/sample_rig.h"
#include "workbench/rig/sheet_visit.h"

namespace workbench {
namespace {

TEST(TreeWindow, EnterOpensAPortsPropertiesAndSaysWhereThereAreNone) {
  SampleRig rig;
  rig.Load();
  {
    TreeWindow window(rig);
    const auto pressEnterOn = [&](const Device& device) {
      window.Select(device);
      PostMessageW(window.Tree(), WM_KEYDOWN, VK_RETURN, 0);
    };
    pressEnterOn(*rig.Port(0).parent);
    PaintNow(window.Window());
    EXPECT_THAT(window.Status(), testing::HasSubstr(L"has no settings page"));
    window.closed = [&](Device& device) {
      EXPECT_EQ(&device, &rig.Port(0));
      PostMessageW(window.Window(), WM_CLOSE, 0, 0);
    };
    const SheetVisit visit([&](const OpenSheet& sheet) {
      EXPECT_FALSE(IsWindowEnabled(window.Window()));
      Click(sheet.Turn(0), IDC_PORT_CTS_ALWAYS_TRUE);
      sheet.PressOk();
    });
    pressEnterOn(rig.Port(0));
    window.RunUntilClosed();
    EXPECT_TRUE(visit.Finish());
    EXPECT_EQ(rig.Driver(0).Current(kPortSet).Number("EmulateCTSTrue"), 1u);
  }
  rig.dll.reset();
  EXPECT_THAT(rig.Misuse(), testing::IsEmpty());
  EXPECT_THAT(rig.LeftOpen(), testing::IsEmpty());
}

}  // namespace
}  // namespace workbench
