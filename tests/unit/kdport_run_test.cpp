#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "../kdport_machine.h"
#include "kdport/output/documents.h"
#include "kdport/output/report_text.h"
#include "kdport/output/table.h"
#include "kdport_schemas.h"

using namespace KdPort;
using Json = nlohmann::json;

namespace {

// Ports 1 to 3 on COM5 to COM7, who go round in a circle, and a setting for each.
struct Circle {
  CFakeHost machine{MakeHost({5, 6, 7})};
  Host host = machine.host;
  Plan plan;
  Circle() {
    std::vector<Wish> wishes = {{0, 6, {}}, {1, 7, {}}, {2, 5, {}}};
    for (Wish& wish : wishes) wish.values[Field::Baud] = 19200;
    plan = MakePlan(host, wishes, false);
  }
  RunReport Run(const Watcher& watcher = {}) { return RunSteps(host, plan.steps, machine, watcher); }
};

std::string StatesOf(const RunReport& report) {
  std::string states;
  for (const StepResult& result : report.results) states += "+!."[static_cast<std::size_t>(result.state)];
  return states;
}

TEST(KdPortRun, AFailureEndsNoMoreThanItHasTo) {
  const struct {
    std::size_t failing;
    Outcome::Kind kind;
    const char* states;  // + done, ! failed, . not begun
    ExitCode exit;
  } cases[] = {
      {0, Outcome::Done, "+++++++", ExitCode::Done},
      {1, Outcome::Failed, "!...+++", ExitCode::Failed},
      {2, Outcome::Failed, "+!..+++", ExitCode::Failed},
      {3, Outcome::Failed, "++!.+++", ExitCode::Failed},
      {6, Outcome::Failed, "+++++!+", ExitCode::Failed},
      {2, Outcome::Gone, "+!..++.", ExitCode::Failed},
      {3, Outcome::NoRights, "++!....", ExitCode::NoRights},
  };
  for (const auto& row : cases) {
    Circle circle;
    circle.machine.failing = row.failing;
    circle.machine.failure.kind = row.kind;
    const RunReport report = circle.Run();
    EXPECT_EQ(StatesOf(report), row.states) << row.failing;
    EXPECT_EQ(report.exit, row.exit) << row.failing;
    EXPECT_FALSE(circle.machine.heldTwice) << row.failing;
  }
}

// As much of JSON Schema as the files in schema/ use.
class CSchema {
 public:
  explicit CSchema(const std::string& name) {
    for (const auto& schema : kSchemas) {
      if (name == schema[0]) root_ = Json::parse(schema[1]);
    }
  }
  void Check(const Json& value) const { Check(root_, value, "#"); }

 private:
  void Check(const Json& schema, const Json& value, const std::string& at) const {
    if (schema.contains("$ref"))
      return Check(root_.at(Json::json_pointer(schema["$ref"].get<std::string>().substr(1))), value, at);
    if (schema.contains("enum")) {
      EXPECT_NE(std::ranges::find(schema["enum"], value), schema["enum"].end()) << at << ": " << value;
      return;
    }
    const Json types = schema["type"].is_array() ? schema["type"] : Json::array({schema["type"]});
    EXPECT_NE(std::ranges::find(types, TypeOf(value)), types.end()) << at << ": " << value;
    if (value.is_array()) {
      for (const Json& item : value) Check(schema["items"], item, at + "[]");
    }
    if (!value.is_object()) return;
    for (const auto& [name, member] : value.items()) {
      ASSERT_TRUE(schema["properties"].contains(name)) << at << " has " << name;
      Check(schema["properties"][name], member, at + "." + name);
    }
    for (const Json& name : schema.value("required", Json::array()))
      EXPECT_TRUE(value.contains(name)) << at << " lacks " << name;
  }
  static Json TypeOf(const Json& value) { return value.is_number_integer() ? "integer" : value.type_name(); }

  Json root_;
};

TEST(KdPortDocuments, EachIsAsItsSchemaSays) {
  Circle circle;
  const std::size_t all[] = {0, 1, 2};
  circle.host.ports[0].friendlyName = "Port (COM9) \xFF\x1B";
  circle.host.ports[1].name = "";
  Claim(circle.host, 9);
  circle.machine.failing = 2;
  const std::vector<LiveStatus> live(3, {true, "9600", "8", "None", "1", "None", "Idle", "RS232"});
  const std::string list = ListDocument(circle.host, all, live);
  const std::string check = CheckDocument(circle.host, CheckHost(circle.host, all, true));
  const std::string planned = ChangeDocument(circle.host, circle.plan, nullptr);
  const RunReport report =
      Circle().Run({.progress = {}, .interrupted = {}, .keepUndo = [](const auto&) { return false; }});
  Circle failing;
  failing.machine.failing = 2;
  const Plan refused = MakePlan(failing.host, {{0, 7, {}}}, false);
  const RunReport failed = failing.Run();
  const Message fault{Text::NoSuchPort, {"COM7"}};
  const struct {
    const char* schema;
    std::string document;
    const char* holds;  // a place that has to be filled
  } cases[] = {
      {"list", list, "/ports/2/values/data-port"},
      {"list", list, "/ports/2/live/mode"},
      {"check", check, "/findings/0/mend/place"},
      {"check", check, "/findings/2/mend/to"},
      {"change", planned, "/steps/6/values/baud"},
      {"change", ChangeDocument(failing.host, refused, nullptr), "/obstacles/0/advice"},
      {"change", ChangeDocument(failing.host, failing.plan, &failed), "/steps/1/why/text"},
      {"change", ChangeDocument(failing.host, failing.plan, &report), "/faults/0/code"},
      {"update", UpdateDocument("KDBUS\\PORT", "c:\\x.inf", true, false), "/updated"},
      {"error", ErrorDocument(ExitCode::NoSuchPort, {&fault, 1}), "/faults/0/advice"},
  };
  for (const auto& row : cases) {
    const Json document = Json::parse(row.document);
    CSchema(row.schema).Check(document);
    EXPECT_TRUE(document.contains(Json::json_pointer(row.holds))) << row.document;
  }
}

TEST(KdPortText, TablesAreAlignedByCharactersAndObeyNoControlCharacter) {
  CTable table({"A", "B"});
  table.Add({"\xC3\xA9\x1B", "x"});
  table.Add({"abcd", ""});
  EXPECT_EQ(table.Print(), "A     B\n\xC3\xA9?    x\nabcd\n");
}

}  // namespace
