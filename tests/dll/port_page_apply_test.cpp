// OK on the port page: what is written where, and the question about a port that is in use.
#include "page_test.h"

namespace {

class PortPageApply : public PageTest {
 protected:
  // Checks a box and presses OK; true when the sheet has closed.
  bool Apply(int box) {
    PageOf().Check(box, true);
    return PageOf().PressOk();
  }
  [[nodiscard]] std::optional<std::wstring> PortsValue() {
    return machine.Registry().Text(workbench::kPortsKey, L"COM7:");
  }
};

TEST_F(PortPageApply, UntouchedBoxesWriteNothing) {
  web.SetPort(1, {.baudRate = 38400});
  PageOf();
  Port().port->openElsewhere = true;
  const std::optional<std::wstring> before = PortsValue();
  EXPECT_TRUE(PageOf().PressOk());
  EXPECT_THAT(Driver().Records(), IsEmpty());
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(PortsValue(), before);
}

TEST_F(PortPageApply, AChangedBoxReachesDriverAndPortsKey) {
  web.SetPort(1, {.baudRate = 38400, .stopBits = 2, .flowControl = 4});
  EXPECT_TRUE(Apply(IDC_PORT_CTS_ALWAYS_TRUE));
  EXPECT_THAT(Written(), ElementsAre("EmulateCTSTrue 0 -> 1", "", "")) << "then both sets of the refresh";
  // Data bits before parity, unlike the default that a rename writes.
  EXPECT_EQ(PortsValue(), L"38400,5,n,2,x") << "parity 1 of the device is stored as data bits 0";
}

TEST_F(PortPageApply, APortInUseIsTouchedAfterAYesOnly) {
  PageOf();
  Port().port->openElsewhere = true;
  const std::optional<std::wstring> before = PortsValue();
  int answer = IDNO;
  // Neither a tick under the question nor a close message changes what the user has chosen.
  machine.Screen().AnswerBy([&](const workbench::MessageBoxRecord&) {
    for (const UINT message : {WM_TIMER, WM_CLOSE}) SendMessageW(PageOf().Page(), message, 1, 0);
    return answer;
  });
  EXPECT_FALSE(Apply(IDC_PORT_CTS_ALWAYS_TRUE));
  EXPECT_THAT(BoxTexts(),
              ElementsAre(L"The port has been opened by another application. Changing the port settings "
                          L"may have an unpredictable effect on the other application.  Do you wish to "
                          L"continue?|Warning!|68"));
  EXPECT_EQ(PortSet().Number("EmulateCTSTrue"), 0u);
  EXPECT_EQ(PortsValue(), before);
  EXPECT_EQ(PageOf().Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "checked") << "the user's wish stays";
  answer = IDYES;
  EXPECT_TRUE(PageOf().PressOk());
  EXPECT_EQ(Boxes().size(), 2u);
  EXPECT_EQ(PortSet().Number("EmulateCTSTrue"), 1u);
}

TEST_F(PortPageApply, ADriverThatRefusesKeepsItsSettingsAndTheSheetCloses) {
  PageOf();
  Driver().Inject({.operation = DriverFault::Operation::Write, .selector = kPortSet});
  EXPECT_TRUE(Apply(IDC_PORT_DSR_ALWAYS_TRUE));
  EXPECT_EQ(PortSet().Number("EmulateDSRTrue"), 0u);
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(PortPageApply, AnOfflineDeviceIsReportedAndTheSettingsAreWritten) {
  PageOf();
  web.Stop();
  EXPECT_TRUE(Apply(IDC_PORT_DSR_ALWAYS_TRUE));
  EXPECT_EQ(PortSet().Number("EmulateDSRTrue"), 1u);
  EXPECT_EQ(Boxes().size(), 1u);
}

}  // namespace
