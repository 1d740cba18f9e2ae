// The advanced sheet as a whole: its tabs, its caption, the page that is made and not shown, and what it
// leaves.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "advanced_test.h"
#include "base/resource_ids.h"
#include "footprint.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class AdvancedSheet : public AdvancedTest {};

TEST_F(AdvancedSheet, HasThreeTabsAndThePortInItsCaption) {
  for (const std::uint32_t portType : {0u, 0xFFFFFFFFu}) {
    PortSet().SetNumber("PortType", portType);
    BusSet().SetNumber("PortType", portType);
    Run([&](const OpenSheet& sheet) {
      EXPECT_THAT(sheet.Tabs(), ElementsAre(L"Port Settings", L"TCP/IP Settings", L"About"));
      EXPECT_THAT(sheet.Caption(), HasSubstr(L"Advanced Settings for COM7"));
    });
  }
}

TEST_F(AdvancedSheet, WithoutAPortNameHasTheCaptionAlone) {
  machine.Registry().DeleteValue(workbench::ParametersKeyOf(Port().instanceId), L"PortName");
  Run([](const OpenSheet& sheet) { EXPECT_THAT(sheet.Caption(), HasSubstr(L"Advanced Settings for")); });
}

TEST_F(AdvancedSheet, ReportsASaveAlsoWhenNothingWasWritten) {
  EXPECT_EQ(Run([](const OpenSheet& sheet) { sheet.PressOk(); }).result, 1);
  EXPECT_THAT(Written(), IsEmpty());
  EXPECT_EQ(Run([](const OpenSheet& sheet) { sheet.PressCancel(); }).result, 0);
}

TEST_F(AdvancedSheet, APageThatCannotBeMadeLeavesNoOtherBehind) {
  for (const std::uint64_t made : {0u, 1u, 2u}) {
    machine.Calls().ClearLog();
    machine.Calls().Inject({.function = "CreatePropertySheetPageW", .from = made + 1});
    PageOf().Click(IDC_PORT_ADVANCED);
    machine.Calls().ClearFaults();
    std::vector<std::uint64_t> pages;
    std::vector<std::uint64_t> freed;
    for (const auto& call : machine.Calls().CallsOf("CreatePropertySheetPageW")) pages.push_back(call.result);
    for (const auto& call : machine.Calls().CallsOf("DestroyPropertySheetPage"))
      freed.push_back(call.Number(0));
    ASSERT_EQ(pages.size(), made + 1);
    pages.pop_back();
    EXPECT_EQ(freed, pages);
    EXPECT_EQ(machine.Calls().CountOf("PropertySheetW"), 0u);
  }
}

// The page that is not shown has read its set when the sheet is made, and the port page goes by that: in
// RS-485 mode there is no CTS, whatever the driver says by then. A driver that says nothing leaves the boxes
// alone.
TEST_F(AdvancedSheet, ASaveTakesTheDuplexModeOfTheHiddenPage) {
  struct Row {
    std::uint32_t atOpening, later;
    const char* box;
    bool readable = true;
  };
  PortSet().SetNumber("PortType", 1);
  for (const Row& row :
       {Row{2, 1, "checked, disabled, label disabled"}, Row{1, 2, "clear"}, Row{2, 2, "clear", false}}) {
    PortSet().SetNumber("DuplexMode", row.atOpening);
    const Outcome outcome = Run([&](const OpenSheet& sheet) {
      PortSet().SetNumber("DuplexMode", row.later);
      if (!row.readable) Driver().Inject({.operation = workbench::DriverFault::Operation::Read});
      sheet.PressOk();
    });
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(PageOf().Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), row.box);
    EXPECT_THAT(Written(), IsEmpty());
    Driver().ClearFaults();
  }
}

// After a cancel the boxes stay as they are, and the label of the DSR box stays enabled even after a save.
TEST_F(AdvancedSheet, ASaveShowsThatALineIsGone) {
  PortSet().SetNumber("CtsSupported", 0);
  PortSet().SetNumber("DsrSupported", 0);
  Run([](const OpenSheet& sheet) { sheet.PressCancel(); });
  EXPECT_EQ(PageOf().Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "clear");
  Run([](const OpenSheet& sheet) { sheet.PressOk(); });
  EXPECT_EQ(PageOf().Box(IDC_PORT_CTS_ALWAYS_TRUE, IDC_PORT_CTS_LABEL), "checked, disabled, label disabled");
  EXPECT_EQ(PageOf().Box(IDC_PORT_DSR_ALWAYS_TRUE, IDC_PORT_DSR_LABEL), "checked, disabled");
}

// Device Manager may take its sheet away under the one that the page has opened.
TEST_F(AdvancedSheet, EndsWithTheSheetOfThePage) {
  Run([this](const OpenSheet&) { DestroyWindow(PageOf().Window()); });
  EXPECT_EQ(machine.Calls().OpenCount(workbench::HandleKind::DeviceSet), 0u);
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
  server.card->present = false;
  Run([](const OpenSheet& sheet) { EXPECT_THAT(sheet.Tabs(), testing::SizeIs(3)); });
  EXPECT_THAT(Written(), IsEmpty());
}

// Two at once, of two ports: each has its own values, and its own answer to a help click.
TEST_F(AdvancedSheet, TwoSheetsShareNothing) {
  Driver(1).Current(workbench::kBusSet).SetNumber("RxFifoSize", 2048);
  BusSet().SetNumber("RxFifoSize", 1024);
  PageOf(1);
  Run([&](const OpenSheet& outer) {
    const HWND first = outer.Turn(OpenSheet::kDevice);
    RunOn(1, [&](const OpenSheet& inner) {
      const HWND second = inner.Turn(OpenSheet::kDevice);
      EXPECT_EQ(TextOf(second, IDC_DEVICE_RX_FIFO_SIZE), L"2048 bytes");
      EXPECT_EQ(TextOf(first, IDC_DEVICE_RX_FIFO_SIZE), L"1024 bytes");
      Click(second, IDC_DEVICE_CONNECT_OFFLINE);
      inner.PressOk();
    });
    EXPECT_FALSE(IsChecked(first, IDC_DEVICE_CONNECT_OFFLINE));
    EXPECT_EQ(SelectedOf(first, IDC_DEVICE_COM_NUMBER), L"COM7");
  });
  EXPECT_THAT(Driver(1).Writes(), testing::SizeIs(1));
  EXPECT_THAT(Written(), IsEmpty());
}

// The counts below mean something: they see what is left. WinINet's threads may end meanwhile, with their
// handles.
TEST(FootprintTest, SeesWhatIsLeft) {
  constexpr std::size_t kEvents = 100;
  HANDLE events[kEvents];
  const Footprint before = Footprint::Take();
  for (HANDLE& event : events) event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const HBRUSH brush = CreateSolidBrush(0x123456);
  const HMENU menu = CreateMenu();
  void* volatile const memory = std::malloc(64);  // volatile: nothing else uses it, and it has to be there
  const Footprint after = Footprint::Take();
  EXPECT_GT(after.kernelHandles, before.kernelHandles + kEvents / 2);
  EXPECT_EQ(after.gdiObjects, before.gdiObjects + 1);
  EXPECT_EQ(after.userObjects, before.userObjects + 1);
  EXPECT_EQ(after.heapBytes, before.heapBytes + 64);
  std::free(memory);
  DestroyMenu(menu);
  DeleteObject(brush);
  for (const HANDLE event : events) CloseHandle(event);
}

// Wine's static controls forget the bitmaps that they have loaded; on Windows there is nothing left to
// delete.
class LoadedBitmaps {
 public:
  void NoteThoseOf(HWND window) { EnumChildWindows(window, &Note, reinterpret_cast<LPARAM>(&bitmaps_)); }
  ~LoadedBitmaps() {
    for (const HGDIOBJ bitmap : bitmaps_) {
      if (GetObjectType(bitmap) == OBJ_BITMAP) DeleteObject(bitmap);
    }
  }

 private:
  static BOOL CALLBACK Note(HWND control, LPARAM list) {
    const LRESULT bitmap = SendMessageW(control, STM_GETIMAGE, IMAGE_BITMAP, 0);
    if (bitmap != 0)
      reinterpret_cast<std::vector<HGDIOBJ>*>(list)->push_back(reinterpret_cast<HGDIOBJ>(bitmap));
    return TRUE;
  }
  std::vector<HGDIOBJ> bitmaps_;
};

// Opened, looked through and closed again and again, page and sheet leave nothing behind. KDUUI_SHEET_CYCLES
// raises the number of cycles.
TEST_F(AdvancedSheet, LeavesNothingBehind) {
  wchar_t text[16] = {};
  GetEnvironmentVariableW(L"KDUUI_SHEET_CYCLES", text, ARRAYSIZE(text));
  const int cycles = std::max(20, _wtoi(text));
  const auto openAndClose = [&](int times) {
    for (int count = 0; count < times; ++count) {
      LoadedBitmaps bitmaps;
      bitmaps.NoteThoseOf(PageOf().Page());
      Run([&](const OpenSheet& sheet) {
        for (const int tab : {OpenSheet::kDevice, OpenSheet::kTcpIp, OpenSheet::kAbout}) {
          bitmaps.NoteThoseOf(sheet.Turn(tab));
        }
      });
      pages_[0].reset();
      machine.Calls().ClearLog();
      web.ClearRequests();
    }
    web.Stop();  // whose threads come and go
    const Footprint footprint = Footprint::Take();
    StartWeb();
    for (const unsigned port : {0u, 1u}) workbench::PointAt(Driver(port), web, port + 1);
    return footprint;
  };
  const Footprint before = openAndClose(5);  // what is made once
  const Footprint after = openAndClose(cycles);
  // WinINet's threads come and go as well; what the DLL has opened is counted below, one by one.
  EXPECT_LT(after.kernelHandles, before.kernelHandles + 10);
  EXPECT_LE(after.gdiObjects, before.gdiObjects);
  EXPECT_LE(after.userObjects, before.userObjects);
  // Less than the smallest block in each cycle.
  EXPECT_LT(after.heapBytes, before.heapBytes + 8 * static_cast<std::size_t>(cycles))
      << "before: " << before.heapBytes;
  EXPECT_THAT(machine.Calls().LeftOpen(), IsEmpty());
}

}  // namespace
