#include "kdport/output/report_text.h"

#include "kdport/output/table.h"

namespace KdPort {

namespace {

constexpr const char* kUnknown = "-";

std::string FieldText(const Port& port, Field field) {
  const auto& value = port.values[field];
  return value ? TextOf(field, *value) : kUnknown;
}

std::string IndexText(const Port& port) {
  return port.index != 0 ? std::to_string(port.index) : kUnknown;
}

// "9600,8,none,1,rtscts"
std::string LineText(const Port& port) {
  std::string text;
  for (const Field field : kFields) {
    if (GroupOf(field) != FieldGroup::Settings) continue;
    text += (text.empty() ? "" : ",") + FieldText(port, field);
  }
  return text;
}

std::string NumberText(std::int32_t number) {
  return number != 0 ? ComName(number) : kUnknown;
}

// What a step changes: "COM7 -> COM9", "baud 19200", "the serial map".
std::string StepText(const Step& step) {
  if (step.kind == StepKind::Rename) return NumberText(step.from) + " -> " + NumberText(step.to);
  if (step.kind == StepKind::Release) return NumberText(step.to);
  if (step.kind == StepKind::Mend) return std::string(WordOf(step.place));
  std::string text;
  for (const Field field : kFields) {
    if (!step.values[field]) continue;
    text +=
        (text.empty() ? "" : ", ") + std::string(ColumnOf(field)) + " " + TextOf(field, *step.values[field]);
  }
  return text;
}

std::vector<std::string> StepCells(const Host& host, const Step& step) {
  const bool ofPort = step.kind != StepKind::Release;
  return {ofPort ? host.ports[step.port].Key() : kUnknown, std::string(WordOf(step.kind)), StepText(step)};
}

std::string Stated(StepState state) {
  constexpr const char* kStates[] = {"done", "failed", "not begun"};
  return kStates[static_cast<std::size_t>(state)];
}

}  // namespace

std::string MessageText(const Message& message) {
  const std::string advice = Advise(message);
  return Harmless(Say(message) + (advice.empty() ? "" : " - " + advice)) + "\n";
}

std::string ListText(const Host& host, std::span<const std::size_t> ports) {
  CTable table({"NAME", "SERVER", "PORT", "ADDRESS", "DATA PORT", "LINE", "STATE"});
  for (const std::size_t i : ports) {
    const Port& port = host.ports[i];
    table.Add({port.name.empty() ? kUnknown : port.name, port.server, IndexText(port),
               FieldText(port, Field::Address), FieldText(port, Field::DataPort), LineText(port),
               !port.present ? "absent"
               : port.open   ? "open"
                             : "free"});
  }
  return table.Print();
}

std::string LiveText(const Host& host, std::span<const std::size_t> ports, std::span<const LiveStatus> live) {
  CTable table({"NAME", "SERVER", "PORT", "STATE", "MODE", "BAUD", "DATA", "PARITY", "STOP", "FLOW"});
  for (std::size_t i = 0; i < ports.size(); ++i) {
    const Port& port = host.ports[ports[i]];
    const LiveStatus& now = live[i];
    table.Add({port.name.empty() ? kUnknown : port.name, port.server, IndexText(port), now.state, now.mode,
               now.baud, now.dataBits, now.parity, now.stopBits, now.flowControl});
  }
  return table.Print();
}

std::string FindingsText(std::span<const Finding> findings) {
  std::string text;
  for (const Finding& finding : findings) text += MessageText(finding.message);
  return text;
}

std::string PlanText(const Host& host, const Plan& plan) {
  CTable changes({"PORT", "WHAT", "OLD", "", "NEW"});
  for (const Change& change : plan.changes) {
    const std::string before = change.before.empty() ? kUnknown : change.before;
    changes.Add({host.ports[change.port].Key(), change.what, before, "->", change.after});
  }
  std::string text = plan.changes.empty() ? "" : changes.Print();
  for (const Obstacle& obstacle : plan.obstacles) text += MessageText(obstacle.message);
  if (plan.steps.empty()) return text;
  CTable steps({"STEP", "PORT", "DOES", ""});
  for (std::size_t i = 0; i < plan.steps.size(); ++i) {
    std::vector<std::string> row = StepCells(host, plan.steps[i]);
    row.insert(row.begin(), std::to_string(i + 1));
    steps.Add(std::move(row));
  }
  return text + (text.empty() ? "" : "\n") + steps.Print();
}

std::string RunText(const Host& host, const RunReport& report) {
  CTable table({"PORT", "DOES", "", "STATE", "WHY"});
  for (const StepResult& result : report.results) {
    std::vector<std::string> row = StepCells(host, result.step);
    row.push_back(Stated(result.state));
    row.push_back(result.state == StepState::Done ? std::string() : Say(result.why));
    table.Add(std::move(row));
  }
  std::string text = report.results.empty() ? "" : table.Print();
  for (const Message& fault : report.faults) text += MessageText(fault);
  return text;
}

}  // namespace KdPort
