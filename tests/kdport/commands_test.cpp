// kdport's commands on a host of three ports, COM5 to COM7, with a modem on COM3.
#include "workbench/rig/rig.h"

#include <gmock/gmock.h>

#include <chrono>

#include "tests/kdport/probe/kdport_probe.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr char kHeader[] = "server,index,name,baud\n";
constexpr char kServer[] = "ROOT\\VELTRANET\\0001";

std::string RowOf(int index, const std::string& rest) {
  return std::string(kServer) + "," + std::to_string(index) + "," + rest + "\n";
}

struct Host {
  Rig rig{{.comNumbers = {5, 6, 7}, .web = false, .loaded = false}};
  ProbeFunction* probe = nullptr;
  ProbeRun run;

  Host() {
    for (unsigned number = 1; number <= 3; ++number) PointAt(rig.Driver(number - 1), rig.web, number);
    AddForeignPort(rig.machine, 3);
    rig.Load(FolderOf(nullptr) + L"kdport_probe.dll");
    probe = reinterpret_cast<ProbeFunction*>(
        reinterpret_cast<AnyFunction>(GetProcAddress(rig.dll->Module(), "RunKdPortProbe")));
  }
  int Do(const std::vector<const char*>& words) {
    run.words = words.data();
    run.count = static_cast<int>(words.size());
    run.printed.fill('\0');
    return probe(&run);
  }
  int Apply(const std::string& file) {
    run.file = file.c_str();
    return Do({"apply", "a.csv"});
  }
  std::string Printed() const { return run.printed.data(); }
  // "5 6 7": the ports' numbers; with an exclamation mark where the places disagree.
  std::string Names() {
    std::string names;
    for (unsigned index = 0; index < 3; ++index) {
      const ComPlaces places = PlacesOf(rig.machine, rig.Port(index));
      names += std::to_string(ComNumberOf(places.portName)) + (places.Agree() ? " " : "! ");
    }
    return names;
  }
  std::vector<std::uint32_t> Bauds() {
    std::vector<std::uint32_t> bauds;
    for (unsigned index = 0; index < 3; ++index) bauds.push_back(rig.PortSet(index).Number("Baudrate"));
    return bauds;
  }
};

using Prepare = void (*)(Host&);
const Prepare kGhost = [](Host& h) { h.rig.machine.ComNames().Claim(12); };
const Prepare kOpen = [](Host& h) { h.rig.Port().port->openElsewhere = true; };
const Prepare kUser = [](Host& h) { h.run.administrator = false; };
const Prepare kRefusing = [](Host& h) {
  h.rig.Driver().Inject({.operation = DriverFault::Operation::Write});
};
const Prepare kReadOnly = [](Host& h) { h.run.filesAreWritable = false; };
const Prepare kReboot = [](Host& h) { h.rig.machine.System().updateNeedsReboot = true; };
const std::string kBoth = "server,index,baud,data-port\n" + RowOf(1, "19200,4100");
const std::string kRename = kHeader + RowOf(1, "COM9,");
struct Case {
  std::vector<const char*> words;
  int exit;
  const char* says;
  Prepare prepare = nullptr;
  std::string file = {};
  const char* names = "5 6 7 ";
};
const Case kCases[] = {
    {{"--help"}, 0, "Exit status"},
    {{"rename", "--help"}, 0, "Usage: kdport rename"},
    {{}, 2, "--help"},
    {{"frob", "--json"}, 2, "\"exit\": 2"},
    {{"list"}, 0, "COM6  ROOT\\VELTRANET\\0001  2"},
    {{"list", "COM6", "--json"}, 0, "\"index\": 2"},
    {{"list", "com9*"}, 259, "no such port: com9*"},
    {{"list", "--timeout", "x"}, 2, "timeout"},
    {{"check"}, 0, "All places agree"},
    {{"check"}, 1, "COM12 is claimed by nobody", kGhost},
    {{"rename", "COM5", "COM42"}, 0, "COM5 -> COM42  done", nullptr, {}, "42 6 7 "},
    {{"rename", "COM5", "COM3"}, 1, "ACPI\\PNP0501\\3) has it"},
    {{"rename", "COM5", "COM256"}, 2, "\"COM256\" is not a COM name"},
    {{"rename", "all", "COM42"}, 2, "all is 3 ports"},
    {{"rename", "COM5", "COM42"}, 1, "--force", kOpen},
    {{"rename", "COM5", "COM42", "--force"}, 0, "done", kOpen, {}, "42 6 7 "},
    {{"rename", "COM5", "COM42"}, 5, "administrator", kUser},
    {{"set", "all"}, 2, "name at least one of --baud"},
    {{"set", "COM5", "--data", "9"}, 2, "--data: \"9\" is not 5 to 8"},
    {{"set", "COM5", "--baud", "5000000"}, 1, "it supports"},
    {{"set", "COM5", "--baud", "300"}, 1, "refused", kRefusing},
    {{"export"}, 0, "ROOT\\VELTRANET\\0001,3,COM7"},
    {{"export", "x.csv"}, 1, "x.csv cannot be written", kReadOnly},
    {{"apply", "no.csv"}, 2, "no.csv cannot be read"},
    {{"apply", "a.csv", "--dry-run"}, 0, "COM5  ->  COM9\n\nSTEP", nullptr, kRename},
    {{"apply", "a.csv"}, 1, "undo file cannot be written", kReadOnly, kRename},
    {{"apply", "a.csv"}, 259, "(row 2)", nullptr, kHeader + RowOf(9, "COM9,")},
    {{"apply", "a.csv"}, 0, "store  data-port 4100", nullptr, kBoth},
    {{"update-driver", "KDNBUS\\VELTRANETPORT", "x.inf"}, 0, "Restart Windows", kReboot},
    {{"update-driver", "NOBODY", "x.inf"}, 1, "no driver of x.inf"},
};

TEST(KdPortCommands, EachEndsAsItsManualSays) {
  for (const Case& row : kCases) {
    Host host;
    if (row.prepare != nullptr) row.prepare(host);
    if (!row.file.empty()) host.run.file = row.file.c_str();
    SCOPED_TRACE(testing::PrintToString(row.words) + " " + row.says);
    EXPECT_EQ(host.Do(row.words), row.exit) << host.Printed();
    EXPECT_THAT(host.Printed(), HasSubstr(row.says));
    EXPECT_EQ(host.Names(), row.names);
    EXPECT_TRUE(host.rig.Boxes().empty());
  }
}

TEST(KdPortCommands, WhatNobodyNamedStaysAsTheDriversHaveIt) {
  Host host;
  ParameterValues &port = host.rig.PortSet(), &bus = host.rig.BusSet();
  const std::pair<const char*, std::uint32_t> own[] = {{"PortType", 1}, {"DuplexMode", 2},
                                                       {"Databits", 2}, {"Parity", 3},
                                                       {"Stopbits", 1}, {"FlowControl", 4}};
  for (const auto& [name, value] : own) port.SetNumber(name, value);
  std::uint32_t value = 0;
  for (const char* name : {"PortNumber", "ServerConfigPort", "MACAddress1", "MACAddress2", "PortType"})
    bus.SetNumber(name, ++value);
  const ParameterValues portBefore = port, busBefore = bus;
  EXPECT_EQ(host.Do({"set", "all", "--baud", "19200"}), 0) << host.Printed();
  EXPECT_EQ(host.Do({"network", "COM5", "--web-port", "8080"}), 0) << host.Printed();
  EXPECT_EQ(host.Bauds(), std::vector<std::uint32_t>(3, 19200));
  EXPECT_THAT(Differences(portBefore, port), ElementsAre("Baudrate 9600 -> 19200"));
  EXPECT_THAT(Differences(busBefore, bus), ElementsAre("ServerWebPort 0 -> 8080"));
}

// Two ports on one device server, the third on another. One time-out for each would be two after each other.
TEST(KdPortCommands, SilentServersCostOneTimeOutTogether) {
  Host host;
  HttpDeviceServer other;
  for (HttpDeviceServer* web : {&host.rig.web, &other}) {
    web->Start();
    for (unsigned number = 1; number <= 3; ++number) {
      web->SetPort(number, {.baudRate = 19200});
      PointAt(host.rig.Driver(number - 1), number < 3 ? host.rig.web : other, number);
    }
  }
  EXPECT_EQ(host.Do({"list", "--live"}), 0);
  EXPECT_THAT(host.Printed(), HasSubstr("19200"));
  EXPECT_THAT(host.Printed(), Not(HasSubstr("Offline")));
  for (const char* path : {"/p1", "/p2", "/p3"}) {
    for (HttpDeviceServer* web : {&host.rig.web, &other})
      web->SetAnswer(path, {.delay = std::chrono::seconds(60)});
  }
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(host.Do({"list", "--live", "--timeout", "4", "--json"}), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(7));
  EXPECT_THAT(host.Printed(), Not(HasSubstr("\"online\": true")));
  host.rig.web.Stop(), other.Stop();
  Sleep(2000);  // what still waited for them ends before its code is unloaded
}

// Three names in a circle, and a setting for each: four renames and three writes.
const std::string kCircle =
    kHeader + RowOf(1, "COM6,19200") + RowOf(2, "COM7,19200") + RowOf(3, "COM5,19200");

TEST(KdPortCommands, ARunThatEndsAtAnyStepIsTakenBackByItsUndoFile) {
  for (int step = 0; step <= 7; ++step) {
    Host host;
    const std::vector<std::uint32_t> before = host.Bauds();
    host.run.interruptAt = step < 7 ? step : -1;
    EXPECT_EQ(host.Apply(kCircle), step < 7 ? 1 : 0) << host.Printed();
    EXPECT_THAT(host.Printed(), HasSubstr(step < 7 ? "interrupted before this step" : "done"));
    EXPECT_EQ(host.Names() == "6 7 5 ", step >= 4) << step;
    host.run.interruptAt = -1;
    const std::string undo = host.run.written.data();
    EXPECT_EQ(host.Apply(undo), 0) << host.Printed();
    EXPECT_EQ(host.Names(), "5 6 7 ") << step;
    EXPECT_EQ(host.Bauds(), before) << step;
  }
}

// The calls that an undisturbed run makes and that succeed, as faults to inject: one at a time.
std::vector<Fault> FaultsOf(Host& host) {
  std::map<std::string, std::uint64_t> seen;
  std::vector<Fault> faults;
  for (const Call& call : host.rig.machine.Calls().Log()) {
    const std::uint64_t place = ++seen[call.function];
    if (!call.succeeded || FindRow(call.function)->failure.outcome == Outcome::CannotFail) continue;
    faults.push_back({.function = call.function, .from = place});
  }
  return faults;
}

// What these answer when they fail is what they answer of a device that is not present or has no driver, and
// at the end of a list.
bool SaysNothingIsThere(const Fault& fault) {
  return fault.function == "CM_Get_DevNode_Status" || fault.function == "SetupDiGetDeviceRegistryPropertyW" ||
         fault.function.starts_with("SetupDiEnum");
}

// Makes the circle, or mends a port whose places disagree. Nothing is to be lost by a call that fails: what
// is not done is reported, and what the run leaves is mended by running kdport again.
void SweepOver(bool repair) {
  const auto prepare = [repair](Host& host) {
    if (!repair) return;
    host.rig.machine.DosNames().Remove(L"COM6", L"", false);
    host.rig.machine.ComNames().Release(6);
    host.rig.machine.Registry().SetText(kSerialCommKey, host.rig.Port(2).port->kernelDevice, L"COM16");
  };
  const auto work = [repair](Host& host) { return repair ? host.Do({"repair"}) : host.Apply(kCircle); };
  const char* const wanted = repair ? "5 6 7 " : "6 7 5 ";
  std::vector<Fault> faults;
  {
    Host host;
    prepare(host);
    host.rig.machine.Calls().ClearLog();
    ASSERT_EQ(work(host), 0) << host.Printed();
    ASSERT_EQ(host.Names(), wanted);
    faults = FaultsOf(host);
  }
  ASSERT_GT(faults.size(), 20u);
  for (const Fault& fault : faults) {
    Host host;
    prepare(host);
    host.rig.machine.Calls().ClearLog();
    host.rig.machine.Calls().Inject(fault);
    const int exit = work(host);
    const std::string said = host.Printed();
    host.rig.machine.Calls().ClearFaults();
    SCOPED_TRACE(fault.function + " " + std::to_string(fault.from) + "\n" + said);
    if (exit == 0 && !SaysNothingIsThere(fault)) {
      EXPECT_EQ(host.Names(), wanted);
    }
    static_cast<void>(host.Do({"repair", "--release-ghosts"}));
    EXPECT_EQ(work(host), 0) << host.Printed();
    EXPECT_EQ(host.Names(), wanted) << Narrow(FormatPlaces(AllComPlaces(host.rig.machine)));
    EXPECT_EQ(host.rig.machine.ComNames().Claimed().size(), 4u);
    EXPECT_TRUE(host.rig.Boxes().empty());
  }
}

TEST(KdPortFaults, EachFailedCallOfApplyIsReportedAndNothingIsLost) {
  SweepOver(false);
}
TEST(KdPortFaults, EachFailedCallOfRepairIsReportedAndNothingIsLost) {
  SweepOver(true);
}

}  // namespace
}  // namespace workbench
