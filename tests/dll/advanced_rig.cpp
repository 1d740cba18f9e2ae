#include "advanced_rig.h"

#include "base/resource_ids.h"

AdvancedRig::AdvancedRig()
    : before_{workbench::ParameterValues(workbench::kPortSet),
              workbench::ParameterValues(workbench::kBusSet)} {
  BusSet().SetNumber("PortNumber", 4002);
  BusSet().SetNumber("ConnectionAttemptTimeout", 5);
  PageOf();
}

AdvancedRig::~AdvancedRig() {
  for (std::optional<PortSheet>& page : pages_) page.reset();
  for (const workbench::PortDriver& driver : drivers) EXPECT_EQ(driver.OpenSessions(), 0u);
  EXPECT_THAT(machine.Calls().LeftOpen(), testing::IsEmpty());
  EXPECT_THAT(Complaints(), testing::IsEmpty());
  EXPECT_EQ(machine.Screen().PendingAnswers(), 0u);
}

PortSheet& AdvancedRig::PageOf(unsigned port) {
  if (!pages_[port]) {
    pages_[port].emplace(static_cast<PortPageRig&>(*this), port);
    Driver(port).ClearRecords();
    Boxes().clear();
  }
  return *pages_[port];
}

AdvancedRig::Outcome AdvancedRig::Drive(const Step& step, const std::function<INT_PTR()>& show) {
  before_[0] = PortSet();
  before_[1] = BusSet();
  Outcome outcome;
  const workbench::SheetVisit visit(step);
  outcome.result = show();
  outcome.stayedOpen = !visit.Finish();
  return outcome;
}

AdvancedRig::Outcome AdvancedRig::RunOn(unsigned port, const Step& step) {
  const PortSheet& page = PageOf(port);
  return Drive(step, [&] {
    const std::size_t earlier = machine.Calls().CallsOf("PropertySheetW").size();
    page.Click(IDC_PORT_ADVANCED);
    return static_cast<INT_PTR>(machine.Calls().CallsOf("PropertySheetW").at(earlier).result);
  });
}

std::vector<std::wstring> AdvancedRig::BoxTexts() {
  std::vector<std::wstring> texts;
  for (const auto& box : Boxes()) {
    texts.push_back(box.text + L"|" + box.caption + L"|" + std::to_wstring(box.style));
  }
  return texts;
}

std::vector<std::string> AdvancedRig::Written() {
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
