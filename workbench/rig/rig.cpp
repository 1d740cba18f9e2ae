#include "workbench/rig/rig.h"

namespace workbench {

Rig::Rig(const RigOptions& options) {
  wanted.driver = [this](unsigned index) { return DriverOf(index); };
  if (options.web) StartWeb();
  if (!options.comNumbers.empty()) AddServer(options.comNumbers);
  if (options.loaded) Load();
}

DeviceServer& Rig::AddServer(std::vector<unsigned> comNumbers) {
  wanted.comNumbers = std::move(comNumbers);
  return server = AddDeviceServer(machine, wanted);
}

DriverEndpoint* Rig::DriverOf(unsigned index) {
  while (drivers.size() <= index) {
    PortDriver& driver = drivers.emplace_back();
    if (web.Port() == 0) continue;
    const auto number = static_cast<unsigned>(drivers.size());
    web.SetPort(number, {});
    PointAt(driver, web, number);
  }
  return &drivers[index];
}

std::vector<std::string> Rig::Misuse() const {
  std::vector<std::string> all = machine.Calls().Violations();
  for (std::size_t index = 0; index < drivers.size(); ++index) {
    for (const std::string& violation : drivers[index].Violations())
      all.push_back("driver of port " + std::to_string(index + 1) + ": " + violation);
  }
  return all;
}

std::vector<std::string> Rig::LeftOpen() const {
  std::vector<std::string> all = machine.Calls().LeftOpen();
  for (const PortDriver& driver : drivers) {
    if (driver.OpenSessions() != 0) all.emplace_back("a driver");
  }
  return all;
}

void PointAt(PortDriver& driver, const HttpDeviceServer& web, unsigned number) {
  ParameterValues& bus = driver.Current(kBusSet);
  bus.SetNumber("AddressToConnect", 0x7F000001);
  bus.SetNumber("ServerWebPort", web.Port());
  bus.SetNumber("SerialPortIndex", number);
}

}  // namespace workbench
