#include "kdport/model/host.h"

#include <algorithm>
#include <utility>

namespace KdPort {

namespace {

std::size_t At(std::int32_t number) {
  return static_cast<std::size_t>(number);
}

// Of all who call themselves so.
std::vector<Holder> OnlyHolders(std::vector<Holder> all, bool claimed) {
  const bool anyPresent = std::ranges::any_of(all, &Holder::IsPresent);
  if (anyPresent || !claimed) std::erase_if(all, [](const Holder& holder) { return !holder.IsPresent(); });
  return all;
}

}  // namespace

std::string Port::Key() const {
  return index != 0 ? server + "/" + std::to_string(index) : instanceId;
}

std::vector<Holder> HoldersOf(const Host& host, std::int32_t number) {
  std::vector<Holder> all;
  for (const Port& port : host.ports) {
    if (port.Number() == number) all.push_back({&port, nullptr});
  }
  for (const ForeignDevice& device : host.foreign) {
    if (ComNumber(device.name) == number) all.push_back({nullptr, &device});
  }
  return OnlyHolders(std::move(all), IsClaimed(host, number));
}

CHolders::CHolders(const Host& host) {
  for (const Port& port : host.ports) byNumber_[At(port.Number())].push_back({&port, nullptr});
  for (const ForeignDevice& device : host.foreign) {
    byNumber_[At(ComNumber(device.name))].push_back({nullptr, &device});
  }
  byNumber_.front().clear();
  for (std::int32_t number = 1; number <= kHighestNumber; ++number) {
    std::vector<Holder>& holders = byNumber_[At(number)];
    holders = OnlyHolders(std::move(holders), IsClaimed(host, number));
  }
}

bool IsClaimed(const Host& host, std::int32_t number) {
  return host.claimed && !IsNumberFree(*host.claimed, static_cast<std::uint32_t>(number));
}

void SetClaimed(Host& host, std::int32_t number, bool claimed) {
  if (host.claimed && number > 0) host.claimed->at(At(number) - 1) = claimed ? 1 : 0;
}

std::string DisplayName(const Port& port) {
  return port.name.empty() ? port.Key() : port.name + " (" + port.Key() + ")";
}

std::string DisplayName(const Holder& holder) {
  if (holder.port != nullptr) return holder.port->present ? holder.port->Key() : holder.port->instanceId;
  const ForeignDevice& device = *holder.foreign;
  if (device.description.empty()) return device.instanceId;
  return device.instanceId.empty() ? device.description : device.description + " (" + device.instanceId + ")";
}

std::string FormerHolders(std::span<const Holder> holders) {
  std::string text;
  for (const Holder& holder : holders) text += "; " + DisplayName(holder) + " had it";
  return text;
}

}  // namespace KdPort
