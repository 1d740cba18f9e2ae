#include "tests/faults/machine_state.h"

#include <string>

namespace workbench {
namespace {

constexpr wchar_t kNamesKey[] = L"Software\\KdState\\Names";    // DOS device -> target
constexpr wchar_t kPortsThere[] = L"Software\\KdState\\Ports";  // instance id -> kernel device

}  // namespace

void KeepState(Machine& machine, const DeviceServer& server) {
  RegistrySandbox& registry = machine.Registry();
  registry.MakeKey(kNamesKey);
  registry.MakeKey(kPortsThere);
  for (const std::wstring& name : machine.DosNames().Names()) {
    registry.SetText(kNamesKey, name, machine.DosNames().Target(name));
  }
  for (const Device* port : server.ports) {
    if (!port->removed) registry.SetText(kPortsThere, port->instanceId, port->port->kernelDevice);
  }
}

void TakeOverState(Machine& machine, const DeviceServer& server, DWORD process) {
  for (const std::wstring& name : machine.DosNames().Names()) machine.DosNames().Remove(name, L"", false);
  machine.Registry().TakeOver(process);
  const RegistrySandbox& registry = machine.Registry();
  for (Device* port : server.ports) {
    const auto kernelDevice = registry.Text(kPortsThere, port->instanceId);
    if (kernelDevice) port->port->kernelDevice = *kernelDevice;
    port->removed = !kernelDevice;
    port->present = !port->removed;
  }
  machine.ComNames().Load();
  for (const std::wstring& name : registry.ValueNames(kNamesKey)) {
    machine.DosNames().Define(name, registry.Text(kNamesKey, name).value_or(L""));
  }
}

}  // namespace workbench
