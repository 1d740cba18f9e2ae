// A host that does what kdport asks of it, and that sees when a number is held twice.
#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "kdport/run/host_access.h"

inline KdPort::Port MakePort(std::uint32_t index, const std::string& name) {
  KdPort::Port port;
  port.server = "KDSRV\\1&2";
  port.index = index;
  port.instanceId = "KDBUS\\PORT\\1&" + std::to_string(index);
  port.name = name;
  port.friendlyName = "Serial Port (" + name + ")";
  port.kernelDevice = "\\Device\\Kd" + std::to_string(index);
  port.dosTarget = port.kernelDevice;
  port.mapName = name;
  port.present = true;
  port.values[KdPort::Field::Baud] = 9600;
  port.values[KdPort::Field::FlowControl] = 0;
  port.values[KdPort::Field::DataPort] = 4001;
  return port;
}

inline void Claim(KdPort::Host& host, std::int32_t number) {
  if (!host.claimed) host.claimed.emplace();
  SetClaimed(host, number, true);
}

// Ports 1, 2, ... of one device server with these numbers, in good order.
inline KdPort::Host MakeHost(const std::vector<std::int32_t>& numbers) {
  KdPort::Host host;
  host.claimed.emplace();
  for (const std::int32_t number : numbers) {
    host.ports.push_back(
        MakePort(static_cast<std::uint32_t>(host.ports.size() + 1), KdPort::ComName(number)));
    Claim(host, number);
  }
  return host;
}

class CFakeHost : public KdPort::CHostAccess {
 public:
  explicit CFakeHost(KdPort::Host present) : host(std::move(present)) {}

  KdPort::Outcome Read(KdPort::Host& read) override {
    read = host;
    return {};
  }
  KdPort::Outcome Rename(const KdPort::Port& port, std::int32_t number) override {
    if (const auto refusal = Count(); refusal.kind != KdPort::Outcome::Done) return refusal;
    heldTwice = heldTwice || !HoldersOf(host, number).empty() || IsClaimed(host, number);
    SetClaimed(host, port.Number(), false);
    Find(port).name = KdPort::ComName(number);
    Claim(host, number);
    return {};
  }
  KdPort::Outcome Store(const KdPort::Port& port, const KdPort::CFieldValues& values) override {
    if (const auto refusal = Count(); refusal.kind != KdPort::Outcome::Done) return refusal;
    for (const KdPort::Field field : KdPort::kFields) {
      if (values[field]) Find(port).values[field] = values[field];
    }
    return {};
  }
  KdPort::Outcome Mend(const KdPort::Port& port, KdPort::Place place) override {
    if (const auto refusal = Count(); refusal.kind != KdPort::Outcome::Done) return refusal;
    KdPort::Port& own = Find(port);
    if (place == KdPort::Place::FriendlyName) own.friendlyName = "Serial Port (" + own.name + ")";
    if (place == KdPort::Place::DosDevice) own.dosTarget = own.kernelDevice;
    if (place == KdPort::Place::SerialMap) own.mapName = own.name;
    if (place == KdPort::Place::Database) Claim(host, own.Number());
    return {};
  }
  KdPort::Outcome Release(std::int32_t number) override {
    if (const auto refusal = Count(); refusal.kind != KdPort::Outcome::Done) return refusal;
    SetClaimed(host, number, false);
    return {};
  }

  KdPort::Host host;
  std::size_t failing = 0;  // which operation fails, from 1; 0 for none
  KdPort::Outcome failure{KdPort::Outcome::Failed, "the driver refused"};
  std::size_t operations = 0;
  bool heldTwice = false;

 private:
  KdPort::Outcome Count() { return ++operations == failing ? failure : KdPort::Outcome{}; }
  KdPort::Port& Find(const KdPort::Port& port) {
    return *std::ranges::find(host.ports, port.instanceId, &KdPort::Port::instanceId);
  }
};
