// sort_calls: what putting a device server's ports in order costs, by the number of ports.
//
// Every server's ports come up in reverse order, the worst case. Calls are those of the DLL to Windows; the
// time is that of the simulated machine and the real registry, so it says how cost grows and little more.
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <exception>

#include "workbench/stories/device_installer.h"

namespace {

struct Cost {
  std::size_t calls = 0;
  double milliseconds = 0;
};

Cost Sort(unsigned ports) {
  workbench::Machine machine;
  workbench::ServerSpec wanted;
  for (unsigned at = 0; at < ports; ++at) wanted.comNumbers.push_back(ports - at);
  const workbench::DeviceServer server = AddDeviceServer(machine, wanted);
  const workbench::Dll dll(machine);
  workbench::DeviceInstaller installer(machine, dll);
  machine.Calls().ClearLog();
  const auto start = std::chrono::steady_clock::now();
  installer.Install(*server.ports.front());
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
  return {machine.Calls().Log().size(), time.count()};
}

}  // namespace

int main() {
  try {
    std::printf("ports    calls  calls/port        ms    ms/port\n");
    for (const unsigned ports : {8u, 32u, 128u, 254u}) {
      const Cost cost = Sort(ports);
      std::printf("%5u %8zu %11.1f %9.1f %10.2f\n", ports, cost.calls,
                  static_cast<double>(cost.calls) / ports, cost.milliseconds, cost.milliseconds / ports);
      std::fflush(stdout);
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "sort_calls: %s\n", error.what());
    return 1;
  }
}
