// The stand-in for Device Manager, worked by keyboard.
#include "workbench/demo/tree_window.h"

#include <gmock/gmock.h>
#include <prsht.h>

#include <optional>
#include <utility>
#include <vector>

#include "base/resource_ids.h"
#include "workbench/demo/host_report.h"
#include "workbench/rig/on_screen.h"
#include "workbench/rig/page_controls.h"
#include "workbench/rig/sheet_visit.h"

namespace workbench {
namespace {

class TreeWindowTest : public testing::Test {
 protected:
  void PressEnterOn(const Device& device) {
    window_->Select(device);
    PostMessageW(window_->Tree(), WM_KEYDOWN, VK_RETURN, 0);
  }
  ~TreeWindowTest() override {
    window_.reset();
    dll_.reset();
    EXPECT_THAT(ViolationsOf(host_), testing::IsEmpty());
  }

  SampleHost host_;
  std::optional<Dll> dll_{std::in_place, host_.Host()};
  std::optional<TreeWindow> window_{std::in_place, host_.Host(), *dll_};
};

TEST_F(TreeWindowTest, EnterOpensAPortsPropertiesAndWaitsForThem) {
  std::vector<Device*> closed;
  window_->closed = [&](Device& device) {
    closed.push_back(&device);
    PostMessageW(window_->Window(), WM_CLOSE, 0, 0);
  };
  const SheetVisit visit([&](const OpenSheet& sheet) {
    EXPECT_FALSE(IsWindowEnabled(window_->Window()));
    Click(sheet.Turn(0), IDC_PORT_CTS_ALWAYS_TRUE);
    sheet.PressOk();
  });
  PressEnterOn(host_.Port(1));
  window_->RunUntilClosed();
  EXPECT_TRUE(visit.Finish());
  EXPECT_THAT(closed, testing::ElementsAre(&host_.Port(1)));
  EXPECT_EQ(host_.Driver(1).Current(kPortSet).Number("EmulateCTSTrue"), 1u);
}

TEST_F(TreeWindowTest, SaysSoWhenADeviceHasNoPage) {
  PressEnterOn(*host_.Port(1).parent);
  PaintNow(window_->Window());
  EXPECT_THAT(window_->Status(), testing::HasSubstr(L"Keldrin Veltranet Device Server has no settings page"));
  EXPECT_TRUE(IsWindowEnabled(window_->Window()));
}

}  // namespace
}  // namespace workbench
