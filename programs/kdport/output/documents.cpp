#include "kdport/output/documents.h"

#include <nlohmann/json.hpp>

namespace KdPort {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

// A byte that is no UTF-8 becomes the replacement character: a document is always one.
std::string Printed(const Json& document) {
  return document.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

template <class Range, class Make>
Json ArrayOf(const Range& range, Make make) {
  Json array = Json::array();
  for (const auto& item : range) array.push_back(make(item));
  return array;
}

Json OrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

Json ValuesJson(const CFieldValues& values) {
  Json json = Json::object();
  for (const Field field : kFields) {
    if (values[field]) json[std::string(ColumnOf(field))] = TextOf(field, *values[field]);
  }
  return json;
}

Json MessageJson(const Message& message) {
  return {{"code", WordOf(message.text)}, {"text", Say(message)}, {"advice", OrNull(Advise(message))}};
}

Json MessagesJson(std::span<const Message> messages) {
  return ArrayOf(messages, MessageJson);
}

Json PortJson(const Port& port) {
  return {{"name", OrNull(port.name)},
          {"server", port.server},
          {"index", port.index != 0 ? Json(port.index) : Json()},
          {"device", port.instanceId},
          {"friendlyName", port.friendlyName},
          {"present", port.present},
          {"open", port.open},
          {"values", ValuesJson(port.values)}};
}

Json LiveJson(const LiveStatus& live) {
  return {{"online", live.online}, {"baud", live.baud},     {"data", live.dataBits},
          {"parity", live.parity}, {"stop", live.stopBits}, {"flow", live.flowControl},
          {"state", live.state},   {"mode", live.mode}};
}

Json StepJson(const Host& host, const Step& step) {
  Json json = {{"kind", WordOf(step.kind)}};
  if (step.kind != StepKind::Release) json["port"] = host.ports[step.port].Key();
  if (step.kind == StepKind::Rename) json["from"] = ComName(step.from);
  if (step.kind == StepKind::Rename || step.kind == StepKind::Release) json["to"] = ComName(step.to);
  if (step.kind == StepKind::Store) json["values"] = ValuesJson(step.values);
  if (step.kind == StepKind::Mend) json["place"] = WordOf(step.place);
  return json;
}

Json ResultJson(const Host& host, const StepResult& result) {
  constexpr const char* kStates[] = {"done", "failed", "not-begun"};
  Json json = StepJson(host, result.step);
  json["state"] = kStates[static_cast<std::size_t>(result.state)];
  if (result.state != StepState::Done) json["why"] = MessageJson(result.why);
  return json;
}

Json ChangeJson(const Host& host, const Change& change) {
  return {{"port", host.ports[change.port].Key()},
          {"what", change.what},
          {"old", OrNull(change.before)},
          {"new", change.after}};
}

}  // namespace

std::string ListDocument(const Host& host, std::span<const std::size_t> ports,
                         std::span<const LiveStatus> live) {
  Json list = ArrayOf(ports, [&](std::size_t i) { return PortJson(host.ports[i]); });
  for (std::size_t i = 0; i < live.size(); ++i) list[i]["live"] = LiveJson(live[i]);
  return Printed({{"ports", std::move(list)}});
}

std::string CheckDocument(const Host& host, std::span<const Finding> findings) {
  return Printed({{"findings", ArrayOf(findings, [&](const Finding& finding) {
                     Json json = MessageJson(finding.message);
                     json["port"] = finding.port ? Json(host.ports[*finding.port].Key()) : Json();
                     json["mend"] = finding.mend ? StepJson(host, *finding.mend) : Json();
                     return json;
                   })}});
}

std::string ChangeDocument(const Host& host, const Plan& plan, const RunReport* report) {
  Json document;
  document["changes"] = ArrayOf(plan.changes, [&](const Change& change) { return ChangeJson(host, change); });
  document["obstacles"] = ArrayOf(plan.obstacles, [&](const Obstacle& obstacle) {
    Json json = MessageJson(obstacle.message);
    json["port"] = host.ports[obstacle.port].Key();
    return json;
  });
  document["steps"] = ArrayOf(plan.steps, [&](const Step& step) { return StepJson(host, step); });
  if (report == nullptr) return Printed(document);
  document["steps"] =
      ArrayOf(report->results, [&](const StepResult& result) { return ResultJson(host, result); });
  document["faults"] = MessagesJson(report->faults);
  return Printed(document);
}

std::string UpdateDocument(const std::string& hardwareId, const std::string& inf, bool updated,
                           bool restartNeeded) {
  return Printed(
      {{"hardwareId", hardwareId}, {"inf", inf}, {"updated", updated}, {"restartNeeded", restartNeeded}});
}

std::string ErrorDocument(ExitCode exit, std::span<const Message> faults) {
  return Printed({{"exit", static_cast<int>(exit)}, {"faults", MessagesJson(faults)}});
}

}  // namespace KdPort
