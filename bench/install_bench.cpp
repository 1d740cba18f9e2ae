// install_bench: what installation steps cost by the number of ports of a device server.
//
// Calls are those of the DLL to Windows; the time is that of the simulated machine and the real registry, so
// that it says how cost grows and little more.
#include <windows.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "measure.h"
#include "tests/kdport/probe/kdport_probe.h"
#include "workbench/rig/rig.h"
#include "workbench/text/device_text.h"

namespace {

constexpr std::array kSizes = {8u, 32u, 128u, 254u};
constexpr int kRepeats = 3;

struct Cost {
  double calls = 0;
  double seconds = 0;
};

// What the work costs; what it is made of lies before.
Cost Measure(workbench::Machine& machine, const std::function<void()>& work) {
  machine.Calls().ClearLog();
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  if (!machine.Calls().Violations().empty()) throw std::runtime_error(machine.Calls().Violations().front());
  return {static_cast<double>(machine.Calls().Log().size()), time.count()};
}

std::vector<unsigned> Numbers(unsigned ports, bool falling) {
  std::vector<unsigned> numbers(ports);
  for (unsigned at = 0; at < ports; ++at) numbers[at] = falling ? ports - at : at + 1;
  return numbers;
}

void Expect(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

// The ports came up in reverse order, the worst case, and are put in order.
Cost Sort(unsigned ports) {
  workbench::Rig rig({.comNumbers = Numbers(ports, true), .web = false});
  const Cost cost = Measure(rig.machine, [&] { rig.Installer().Install(*rig.server.ports.front()); });
  Expect(rig.NameOf(*rig.server.ports.front()) == L"COM1", "the ports are not in order");
  return cost;
}

// The last port of the server gets a number that is free.
Cost Rename(unsigned ports) {
  workbench::Rig rig({.comNumbers = Numbers(ports, false), .web = false});
  const workbench::Device& last = *rig.server.ports.back();
  const Cost cost =
      Measure(rig.machine, [&] { rig.dll->ChangeComNumber(last.instanceId.c_str(), L"COM255"); });
  Expect(rig.NameOf(last) == L"COM255", "the port is not renamed");
  return cost;
}

// The server's driver is installed again: its ports are saved and removed, come back with other numbers, and
// are installed one after the other.
Cost Reinstall(unsigned ports) {
  workbench::Rig rig({.comNumbers = Numbers(ports, false), .web = false});
  for (const workbench::Device* port : rig.server.ports) {
    rig.machine.Registry().SetDword(workbench::ParametersKeyOf(port->instanceId), L"Baudrate", 115200);
  }
  rig.wanted.comNumbers = Numbers(ports, true);
  const Cost cost = Measure(rig.machine, [&] {
    rig.Installer().Install(*rig.server.card);
    FindPortsAgain(rig.machine, rig.server, rig.wanted);
    for (workbench::Device* port : rig.server.ports) rig.Installer().Install(*port);
  });
  for (unsigned at = 0; at < ports; ++at) {
    Expect(rig.NameOf(*rig.server.ports[at]) == L"COM" + std::to_wstring(at + 1), "a port lost its name");
  }
  return cost;
}

// kdport gives all ports the numbers of each other, in reverse, by one file.
Cost ApplyReversed(unsigned ports) {
  workbench::Rig rig({.comNumbers = Numbers(ports, false), .web = false, .loaded = false});
  rig.Load(workbench::FolderOf(nullptr) + L"kdport_probe.dll");
  std::string file = "server,index,name\n";
  for (unsigned at = 0; at < ports; ++at) {
    PointAt(rig.Driver(at), rig.web, at + 1);
    file += "ROOT\\VELTRANET\\0001," + std::to_string(at + 1) + ",COM" + std::to_string(ports - at) + "\n";
  }
  const auto apply = reinterpret_cast<ProbeFunction*>(
      reinterpret_cast<void*>(GetProcAddress(rig.dll->Module(), "RunKdPortProbe")));
  const char* const words[] = {"apply", "reversed.csv"};
  ProbeRun run;
  run.words = words;
  run.count = 2;
  run.file = file.c_str();
  int exit = -1;
  const Cost cost = Measure(rig.machine, [&] { exit = apply(&run); });
  Expect(exit == 0 && rig.NameOf(*rig.server.ports.back()) == L"COM1", "the ports are not reversed");
  return cost;
}

// The exponent of the growth between the smallest and the largest size: 1 in step with the ports, 2 with
// their square.
double Exponent(double smallest, double largest) {
  return std::log(largest / smallest) / std::log(double{kSizes.back()} / kSizes.front());
}

void PrintGrowth(const char* name, Cost (*measure)(unsigned)) {
  std::array<Cost, kSizes.size()> costs{};
  // In turn, so that other work on the machine falls on all sizes alike.
  for (int repeat = 0; repeat < kRepeats; ++repeat) {
    for (std::size_t i = 0; i < kSizes.size(); ++i) {
      const Cost cost = measure(kSizes[i]);
      costs[i].calls = cost.calls;
      costs[i].seconds = repeat == 0 ? cost.seconds : std::min(costs[i].seconds, cost.seconds);
    }
  }
  for (std::size_t i = 0; i < kSizes.size(); ++i) {
    std::printf("| %s | %u | %.0f | %.1f | %s | %s |\n", name, kSizes[i], costs[i].calls,
                costs[i].calls / kSizes[i], bench::TimeText(costs[i].seconds).c_str(),
                bench::TimeText(costs[i].seconds / kSizes[i]).c_str());
  }
  std::printf("| %s | slope | %.2f | | %.2f | |\n", name, Exponent(costs.front().calls, costs.back().calls),
              Exponent(costs.front().seconds, costs.back().seconds));
  std::fflush(stdout);
}

}  // namespace

int main() {
  try {
    PrintGrowth("Sorting, from reverse order", Sort);
    PrintGrowth("Renaming one port", Rename);
    PrintGrowth("Reinstalling the server", Reinstall);
    PrintGrowth("kdport apply, all ports reversed", ApplyReversed);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "install_bench: %s\n", error.what());
    return 1;
  }
}
