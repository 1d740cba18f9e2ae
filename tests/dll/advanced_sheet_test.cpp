// The advanced sheet as a whole: its tabs, its caption, the page that is made and not shown, and what it
// leaves.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>

#include "advanced_rig.h"
#include "base/resource_ids.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class AdvancedSheet : public AdvancedRig {};

TEST_F(AdvancedSheet, HasThreeTabsAndThePortInItsCaption) {
  for (const std::uint32_t portType : {0u, 0xFFFFFFFFu}) {
    PortSet().SetNumber("PortType", portType);
    BusSet().SetNumber("PortType", portType);
    Run([&](const OpenSheet& sheet) {
      EXPECT_THAT(sheet.Tabs(), ElementsAre(L"Port Settings", L"TCP/IP Settings", L"About"));
      EXPECT_THAT(sheet.Caption(), HasSubstr(L"Advanced Settings for COM6"));
    });
  }
}

TEST_F(AdvancedSheet, WithoutAPortNameHasTheCaptionAlone) {
  machine_.Registry().DeleteValue(workbench::ParametersKeyOf(Port().instanceId), L"PortName");
  Run([](const OpenSheet& sheet) { EXPECT_THAT(sheet.Caption(), HasSubstr(L"Advanced Settings for")); });
}

TEST_F(AdvancedSheet, ReportsASaveAlsoWhenNothingWasWritten) {
  EXPECT_EQ(Run([](const OpenSheet& sheet) { sheet.PressOk(); }).result, 1);
  EXPECT_THAT(Written(), IsEmpty());
  EXPECT_EQ(Run([](const OpenSheet& sheet) { sheet.PressCancel(); }).result, 0);
}

// The page that is not shown has read its set when the sheet is made.
TEST_F(AdvancedSheet, TellsTheDuplexModeOfItsHiddenPage) {
  PortSet().SetNumber("DuplexMode", 2);
  EXPECT_EQ(DuplexModeOf(1), 2u);
}

TEST_F(AdvancedSheet, AnUnreadableDriverLeavesThePagesWithInitialValues) {
  BusSet().SetNumber("RxFifoSize", 1024);
  Driver().Inject({.operation = workbench::DriverFault::Operation::Read});
  const Outcome outcome = Run([](const OpenSheet& sheet) {
    const HWND device = sheet.Turn(OpenSheet::kDevice);
    EXPECT_EQ(TextOf(device, IDC_DEVICE_RX_FIFO_SIZE), L"0 bytes");
    Click(device, IDC_DEVICE_CONNECT_OFFLINE);
    EXPECT_EQ(TextOf(sheet.Turn(OpenSheet::kTcpIp), IDC_TCPIP_ADDRESS), L"0.0.0.0");
    sheet.PressOk();
  });
  EXPECT_FALSE(outcome.stayedOpen) << "what cannot be read is not written";
  EXPECT_THAT(Written(), IsEmpty());
  Driver().ClearFaults();
}

// The device server went away while Device Manager was open.
TEST_F(AdvancedSheet, APortWhoseDeviceServerIsGoneStillHasASheet) {
  server_.card->present = false;
  Run([](const OpenSheet& sheet) { EXPECT_THAT(sheet.Tabs(), testing::SizeIs(3)); });
  EXPECT_THAT(Written(), IsEmpty());
}

// Two at once, of two ports: each has its own values, and its own answer to a help click.
TEST_F(AdvancedSheet, TwoSheetsShareNothing) {
  drivers_[2].Current(workbench::kBusSet).SetNumber("RxFifoSize", 2048);
  BusSet().SetNumber("RxFifoSize", 1024);
  Run([&](const OpenSheet& outer) {
    const HWND first = outer.Turn(OpenSheet::kDevice);
    RunOn(2, [&](const OpenSheet& inner) {
      const HWND second = inner.Turn(OpenSheet::kDevice);
      EXPECT_EQ(TextOf(second, IDC_DEVICE_RX_FIFO_SIZE), L"2048 bytes");
      EXPECT_EQ(TextOf(first, IDC_DEVICE_RX_FIFO_SIZE), L"1024 bytes");
      Click(second, IDC_DEVICE_CONNECT_OFFLINE);
      inner.PressOk();
    });
    EXPECT_FALSE(IsChecked(first, IDC_DEVICE_CONNECT_OFFLINE));
    EXPECT_EQ(SelectedOf(first, IDC_DEVICE_COM_NUMBER), L"COM6");
  });
  EXPECT_THAT(drivers_[2].Writes(), testing::SizeIs(1));
  EXPECT_THAT(Written(), IsEmpty());
}

// Opened, looked through and closed again and again, the sheet leaves no window, font, brush, key or handle
// behind. KDUUI_SHEET_CYCLES raises the number of cycles, which is small for the sake of slow machines.
TEST_F(AdvancedSheet, LeavesNoHandleOrWindowBehind) {
  wchar_t text[16] = {};
  GetEnvironmentVariableW(L"KDUUI_SHEET_CYCLES", text, ARRAYSIZE(text));
  const int cycles = std::max(50, _wtoi(text));
  const auto openAndClose = [&](int times) {
    for (int count = 0; count < times; ++count) {
      Run([](const OpenSheet& sheet) {
        for (const int tab : {OpenSheet::kDevice, OpenSheet::kTcpIp, OpenSheet::kAbout}) sheet.Turn(tab);
      });
      machine_.Calls().ClearLog();
      Driver().ClearRecords();
    }
  };
  openAndClose(10);  // what is made once
  const Footprint before = TakeFootprint();
  openAndClose(cycles);
  const Footprint after = TakeFootprint();
  EXPECT_LE(after.handles, before.handles);
  EXPECT_LE(after.windows, before.windows);
  EXPECT_EQ(LeftOpen(), "");
}

}  // namespace
