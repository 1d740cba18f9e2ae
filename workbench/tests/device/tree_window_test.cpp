// The stand-in for Device Manager, worked by keyboard.
#include "workbench/demo/tree_window.h"

#include <gmock/gmock.h>
#include <prsht.h>

#include <optional>
#include <utility>
#include <vector>

#include "base/resource_ids.h"
#include "workbench/rig/page_controls.h"
#include "workbench/rig/sample_rig.h"
#include "workbench/rig/sheet_visit.h"

namespace workbench {
namespace {

class TreeWindowTest : public testing::Test {
 protected:
  TreeWindowTest() {
    host_.Load();
    window_.emplace(host_);
  }
  void PressEnterOn(const Device& device) {
    window_->Select(device);
    PostMessageW(window_->Tree(), WM_KEYDOWN, VK_RETURN, 0);
  }
  ~TreeWindowTest() override {
    window_.reset();
    host_.dll.reset();
    EXPECT_THAT(host_.Misuse(), testing::IsEmpty());
    EXPECT_THAT(host_.LeftOpen(), testing::IsEmpty());
  }

  SampleRig host_;
  std::optional<TreeWindow> window_;
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
  PressEnterOn(host_.Port(0));
  window_->RunUntilClosed();
  EXPECT_TRUE(visit.Finish());
  EXPECT_THAT(closed, testing::ElementsAre(&host_.Port(0)));
  EXPECT_EQ(host_.Driver(0).Current(kPortSet).Number("EmulateCTSTrue"), 1u);
}

TEST_F(TreeWindowTest, SaysSoWhenADeviceHasNoPage) {
  PressEnterOn(*host_.Port(0).parent);
  PaintNow(window_->Window());
  EXPECT_THAT(window_->Status(), testing::HasSubstr(L"has no settings page"));
  EXPECT_TRUE(IsWindowEnabled(window_->Window()));
}

}  // namespace
}  // namespace workbench
