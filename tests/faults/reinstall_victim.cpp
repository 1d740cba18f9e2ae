// A reinstallation whose process ends at a platform call: reinstall_victim PAST CALL
//
// PAST is the number of a workbench::Past, CALL the number of the platform call, from 1. Exit code: kEnded
// when the process ended there, kWentThrough when the reinstallation needs fewer calls, 1 when it went wrong.
#include "tests/faults/reinstall_victim.h"

#include <cstdlib>
#include <exception>

#include "tests/faults/machine_state.h"

namespace {

using namespace workbench;

int Run(Past past, std::uint64_t call) {
  Machine machine;
  DeviceServer server = BuildVictim(machine, past);
  const Dll dll(machine);
  DeviceInstaller installer(machine, dll);
  machine.Calls().EndAt(call, [&] {
    KeepState(machine, server);
    TerminateProcess(GetCurrentProcess(), kEnded);
  });
  Reinstall(machine, installer, server, kVictimsNewNames);
  return kWentThrough;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 1;
  try {
    return Run(static_cast<Past>(std::atoi(argv[1])), std::strtoull(argv[2], nullptr, 10));
  } catch (const std::exception&) {
    return 1;
  }
}
