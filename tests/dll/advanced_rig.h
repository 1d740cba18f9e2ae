// The advanced sheet of a port, opened from the port's page and driven by messages while it is up.
#pragma once

#include "port_page_rig.h"

#include "workbench/rig/page_controls.h"
#include "workbench/rig/sheet_visit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

using workbench::Click;
using workbench::Enter;
using workbench::EntriesOf;
using workbench::IsChecked;
using workbench::OpenSheet;
using workbench::Select;
using workbench::SelectedOf;
using workbench::TextOf;

// A host whose port COM7 has its page open; the page's button opens the sheet.
class AdvancedRig : public testing::Test, protected PortPageRig {
 protected:
  using Step = workbench::SheetVisit::Visitor;
  struct Outcome {
    INT_PTR result = 0;       // what the sheet's owner is told: 1 when something was saved
    bool stayedOpen = false;  // the steps had not closed it: it was cancelled
  };

  AdvancedRig();
  // Whatever a test does: nothing stays open, no interface was misused, every question had an answer.
  ~AdvancedRig() override;

  // The page of a port, opened by its first use. What was written and asked until then is forgotten.
  PortSheet& PageOf(unsigned port = 0);

  // Opens the port's sheet and runs `step` when it is up; a sheet that is still open then is cancelled.
  Outcome Run(const Step& step) { return RunOn(0, step); }
  Outcome RunOn(unsigned port, const Step& step);
  // The same with the sheet that `show` puts up, whose result it returns.
  Outcome Drive(const Step& step, const std::function<INT_PTR()>& show);

  // "text|caption|style" of the boxes so far.
  [[nodiscard]] std::vector<std::wstring> BoxTexts();
  // What was written to the drivers of COM7, as differences from the set that was there before: one entry for
  // each write, "" for one that changed nothing.
  [[nodiscard]] std::vector<std::string> Written();

  std::optional<PortSheet> pages_[2];

 private:
  workbench::ParameterValues before_[2];
};
