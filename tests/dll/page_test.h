// A port's page, opened as Device Manager does, and the advanced sheet behind its button, driven by messages
// while it is up.
#pragma once

#include "rig_test.h"

#include <functional>
#include <optional>

#include "base/resource_ids.h"
#include "workbench/rig/sheet_visit.h"

using testing::ElementsAre;
using testing::IsEmpty;
using workbench::Call;
using workbench::Click;
using workbench::DriverFault;
using workbench::Enter;
using workbench::EntriesOf;
using workbench::HandleKind;
using workbench::IsChecked;
using workbench::OpenSheet;
using workbench::Select;
using workbench::SelectedOf;
using workbench::TextOf;

// A host with the device server's ports COM7 and COM8. Whatever a test does: every answer that it prepared
// was asked for.
class PageTest : public RigTest {
 protected:
  using Step = workbench::SheetVisit::Visitor;
  struct Outcome {
    INT_PTR result = 0;       // what the sheet's owner is told: 1 when something was saved
    bool stayedOpen = false;  // the steps had not closed it: it was cancelled
  };

  ~PageTest() override {
    for (std::optional<PageSheet>& page : pages_) page.reset();
    EXPECT_EQ(machine.Screen().PendingAnswers(), 0u);
  }

  // The page of a port, opened by its first use. What was written and asked until then is forgotten.
  PageSheet& PageOf(unsigned port = 0) {
    if (!pages_[port]) {
      pages_[port].emplace(*this, port);
      Driver(port).ClearRecords();
      Boxes().clear();
      NoteSets();
    }
    return *pages_[port];
  }
  void ClosePage(unsigned port = 0) { pages_[port].reset(); }
  void Tick() { SendMessageW(PageOf().Page(), WM_TIMER, 1, 0); }

  // Opens the port's advanced sheet and runs `step` when it is up; a sheet that is still open then is
  // cancelled.
  Outcome Run(const Step& step) { return RunOn(0, step); }
  Outcome RunOn(unsigned port, const Step& step) {
    const PageSheet& page = PageOf(port);
    return Drive(step, [&] {
      const std::size_t earlier = machine.Calls().CallsOf("PropertySheetW").size();
      page.Click(IDC_PORT_ADVANCED);
      return static_cast<INT_PTR>(machine.Calls().CallsOf("PropertySheetW").at(earlier).result);
    });
  }
  // The same with the sheet that `show` puts up, whose result it returns.
  Outcome Drive(const Step& step, const std::function<INT_PTR()>& show) {
    NoteSets();
    Outcome outcome;
    const workbench::SheetVisit visit(step);
    outcome.result = show();
    outcome.stayedOpen = !visit.Finish();
    return outcome;
  }
  // Turns to a tab, edits its page and presses OK.
  Outcome Apply(int tab, const std::function<void(HWND)>& edit) {
    return Run([&](const OpenSheet& sheet) {
      edit(sheet.Turn(tab));
      sheet.PressOk();
    });
  }

  // "text|caption|style" of the boxes so far.
  [[nodiscard]] std::vector<std::wstring> BoxTexts() {
    std::vector<std::wstring> texts;
    for (const auto& box : Boxes()) {
      texts.push_back(box.text + L"|" + box.caption + L"|" + std::to_wstring(box.style));
    }
    return texts;
  }
  // What was written to the drivers of COM7, as differences from the set that was there before: one entry for
  // each write, "" for one that changed nothing.
  [[nodiscard]] std::vector<std::string> Written() {
    std::vector<std::string> written;
    for (const workbench::ParameterValues& values : Driver().Writes()) {
      workbench::ParameterValues& before = before_[values.Selector()];
      std::string changes;
      for (const std::string& change : workbench::Differences(before, values)) {
        changes += (changes.empty() ? "" : ", ") + change;
      }
      written.push_back(changes);
      before = values;
    }
    return written;
  }
  // What Written compares with, noted when a page or a sheet opens.
  void NoteSets() {
    before_[0] = PortSet();
    before_[1] = BusSet();
  }

 private:
  std::optional<PageSheet> pages_[2];
  workbench::ParameterValues before_[2]{workbench::ParameterValues(kPortSet),
                                        workbench::ParameterValues(kBusSet)};
};
