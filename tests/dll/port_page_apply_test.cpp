// OK on the port page: what is written where, and the question about a port that is in use.
#include "rig_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "base/resource_ids.h"

namespace {

using workbench::kPortSet;
using workbench::ParameterValues;

std::optional<std::wstring> PortsValue(Rig& rig) {
  return rig.machine.Registry().Text(workbench::kPortsKey, L"COM7:");
}

TEST(PortPageApply, NothingIsWrittenWhenTheBoxesAreUntouched) {
  Rig rig;
  rig.web.SetPort(1, {.baudRate = 38400});
  rig.Port().port->openElsewhere = true;
  PageSheet sheet(rig);
  const std::optional<std::wstring> before = PortsValue(rig);
  rig.Driver().ClearRecords();
  EXPECT_TRUE(sheet.PressOk());
  EXPECT_THAT(rig.Driver().Records(), testing::IsEmpty());
  EXPECT_THAT(rig.Boxes(), testing::IsEmpty());
  EXPECT_EQ(PortsValue(rig), before);
}

TEST(PortPageApply, ChangedBoxReachesDriverAndPortsKey) {
  Rig rig;
  rig.web.SetPort(1, {.baudRate = 38400, .stopBits = 2, .flowControl = 4});
  PageSheet sheet(rig);
  rig.Driver().ClearRecords();
  sheet.Check(IDC_PORT_CTS_ALWAYS_TRUE, true);
  EXPECT_TRUE(sheet.PressOk());
  const std::vector<ParameterValues> writes = rig.Driver().Writes();
  ASSERT_EQ(writes.size(), 3u) << "the user's change, then both sets of the refresh";
  EXPECT_EQ(writes[0].Selector(), kPortSet);
  EXPECT_EQ(writes[0].Number("EmulateCTSTrue"), 1u);
  EXPECT_EQ(rig.PortSet().Number("EmulateCTSTrue"), 1u);
  EXPECT_EQ(rig.PortSet().Number("EmulateDSRTrue"), 0u);
  // Data bits before parity, unlike the default that a rename writes.
  EXPECT_EQ(PortsValue(rig), L"38400,5,n,2,x") << "parity 1 of the device is stored as data bits 0";
  EXPECT_THAT(rig.Misuse(), testing::IsEmpty());
}

TEST(PortPageApply, AsksBeforeItTouchesAPortInUse) {
  for (const bool yes : {true, false}) {
    SCOPED_TRACE(yes);
    Rig rig;
    PageSheet sheet(rig);
    rig.Port().port->openElsewhere = true;
    // Neither a tick under the question nor a close message changes what the user has chosen.
    rig.machine.Screen().AnswerBy([&](const workbench::MessageBoxRecord&) {
      for (const UINT message : {WM_TIMER, WM_CLOSE}) SendMessageW(sheet.Page(), message, 1, 0);
      return yes ? IDYES : IDNO;
    });
    const std::optional<std::wstring> before = PortsValue(rig);
    sheet.Check(IDC_PORT_CTS_ALWAYS_TRUE, true);
    EXPECT_EQ(sheet.PressOk(), yes);
    ASSERT_EQ(rig.Boxes().size(), 1u);
    EXPECT_EQ(rig.Boxes()[0].text,
              L"The port has been opened by another application. Changing the port settings may have an "
              L"unpredictable effect on the other application.  Do you wish to continue?");
    EXPECT_EQ(rig.Boxes()[0].caption, L"Warning!");
    EXPECT_EQ(rig.Boxes()[0].style, static_cast<UINT>(MB_YESNO | MB_ICONINFORMATION));
    EXPECT_EQ(rig.PortSet().Number("EmulateCTSTrue"), yes ? 1u : 0u);
    if (yes) continue;
    EXPECT_EQ(PortsValue(rig), before);
    EXPECT_EQ(sheet.Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "checked") << "the user's wish stays";
    // The other application lets go: the same OK now works.
    rig.Port().port->openElsewhere = false;
    EXPECT_TRUE(sheet.PressOk());
    EXPECT_EQ(rig.PortSet().Number("EmulateCTSTrue"), 1u);
  }
}

TEST(PortPageApply, DriverThatRefusesKeepsItsSettings) {
  Rig rig;
  PageSheet sheet(rig);
  rig.Driver().Inject({.operation = workbench::DriverFault::Operation::Write, .selector = kPortSet});
  sheet.Check(IDC_PORT_DSR_ALWAYS_TRUE, true);
  EXPECT_TRUE(sheet.PressOk());
  EXPECT_EQ(rig.PortSet().Number("EmulateDSRTrue"), 0u);
  EXPECT_THAT(rig.Boxes(), testing::IsEmpty());
}

// A port without a name cannot be opened, so the question comes; a yes writes to the driver alone.
TEST(PortPageApply, WithoutAPortNameNothingGoesToThePortsKey) {
  Rig rig;
  PageSheet sheet(rig);
  rig.machine.Registry().DeleteValue(workbench::ParametersKeyOf(rig.Port().instanceId), L"PortName");
  rig.machine.Screen().Answer(IDYES);
  sheet.Check(IDC_PORT_CTS_ALWAYS_TRUE, true);
  EXPECT_TRUE(sheet.PressOk());
  EXPECT_EQ(rig.Boxes().size(), 1u);
  EXPECT_EQ(rig.PortSet().Number("EmulateCTSTrue"), 1u);
  EXPECT_EQ(rig.machine.Registry().Text(workbench::kPortsKey, L":"), std::nullopt);
}

TEST(PortPageApply, OfflineDeviceIsToldAndTheSettingsAreWritten) {
  Rig rig;
  PageSheet sheet(rig);
  rig.web.Stop();
  sheet.Check(IDC_PORT_DSR_ALWAYS_TRUE, true);
  EXPECT_TRUE(sheet.PressOk());
  EXPECT_EQ(rig.PortSet().Number("EmulateDSRTrue"), 1u);
  EXPECT_EQ(rig.Boxes().size(), 1u);
}

}  // namespace
