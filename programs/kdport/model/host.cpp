#include "kdport/model/host.h"

namespace KdPort {

namespace {

std::size_t At(std::int32_t number) {
  return static_cast<std::size_t>(number);
}

}  // namespace

std::string Port::Key() const {
  return server + "/" + std::to_string(index);
}

std::vector<Holder> HoldersOf(const Host& host, std::int32_t number) {
  std::vector<Holder> holders;
  for (const Port& port : host.ports) {
    if (port.Number() == number) holders.push_back({&port, nullptr});
  }
  for (const ForeignDevice& device : host.foreign) {
    if (ComNumber(device.name) == number) holders.push_back({nullptr, &device});
  }
  return holders;
}

CHolders::CHolders(const Host& host) {
  for (const Port& port : host.ports) byNumber_[At(port.Number())].push_back({&port, nullptr});
  for (const ForeignDevice& device : host.foreign) {
    byNumber_[At(ComNumber(device.name))].push_back({nullptr, &device});
  }
  byNumber_.front().clear();
}

bool IsClaimed(const Host& host, std::int32_t number) {
  return host.claimed && !IsNumberFree(*host.claimed, static_cast<std::uint32_t>(number));
}

std::string DisplayName(const Port& port) {
  return port.name.empty() ? port.Key() : port.name + " (" + port.Key() + ")";
}

std::string DisplayName(const Holder& holder) {
  if (holder.port != nullptr) return holder.port->Key();
  const ForeignDevice& device = *holder.foreign;
  if (device.description.empty()) return device.instanceId;
  return device.instanceId.empty() ? device.description : device.description + " (" + device.instanceId + ")";
}

}  // namespace KdPort
