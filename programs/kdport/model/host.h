// A host as kdport sees it, read once at the start of a command. All text is UTF-8, as everywhere in kdport.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "install/naming/com_names.h"
#include "kdport/model/com_name.h"
#include "kdport/model/fields.h"

namespace KdPort {

// A port of the product.
struct Port {
  std::string instanceId;
  std::string server;       // the device server's instance id
  std::uint32_t index = 0;  // the port's number on its device server, from 1; 0 when unknown
  std::string name;         // "PortName" as it stands; empty when there is none
  std::string friendlyName;
  std::string kernelDevice;              // what its DOS device has to point at; empty when unknown
  std::optional<std::string> dosTarget;  // what the DOS device of its name points at; nothing without one
  std::optional<std::string> mapName;    // its kernel device's name in the serial map; nothing without one
  bool present = false;
  bool open = false;             // by a program
  std::uint32_t lowestBaud = 0;  // what the port supports; 0 and 0 when unknown
  std::uint32_t highestBaud = 0;
  CFieldValues values;  // without those that a driver did not report

  // 0 when the port has no well-formed COM name.
  [[nodiscard]] std::int32_t Number() const { return ComNumber(name); }
  // SERVER/INDEX; the instance id when the index is not known.
  [[nodiscard]] std::string Key() const;
};

// Something else that has a COM name: another maker's device, or a DOS device that nobody owns.
struct ForeignDevice {
  std::string instanceId;
  std::string description;
  std::string name;
  bool present = false;
  std::string kernelDevice;  // empty when unknown
};

struct Host {
  std::vector<Port> ports;
  std::vector<ForeignDevice> foreign;
  std::optional<ComUsage> claimed;  // the COM name database; nothing when it cannot be read
};

// Who has a COM number. Exactly one of the two is set.
struct Holder {
  const Port* port = nullptr;
  const ForeignDevice* foreign = nullptr;
  [[nodiscard]] bool IsPresent() const { return port != nullptr ? port->present : foreign->present; }
};

// Who has the number: all who are present; when nobody is, those who had it last, as long as the database has
// it claimed. The host has to outlive them.
[[nodiscard]] std::vector<Holder> HoldersOf(const Host& host, std::int32_t number);

// The same for every number, for who asks about many. The host has to outlive it and to stay as it is.
class CHolders {
 public:
  explicit CHolders(const Host& host);
  // `number` from 0, which nobody has, to the highest.
  [[nodiscard]] std::span<const Holder> Of(std::int32_t number) const {
    return byNumber_[static_cast<std::size_t>(number)];
  }

 private:
  std::array<std::vector<Holder>, kHighestNumber + 1> byNumber_;
};

// Whether the database has the number claimed; false when it cannot be read.
[[nodiscard]] bool IsClaimed(const Host& host, std::int32_t number);
void SetClaimed(Host& host, std::int32_t number, bool claimed);

// How messages call a device, and those who had a number and are not present.
[[nodiscard]] std::string DisplayName(const Port& port);
[[nodiscard]] std::string DisplayName(const Holder& holder);
[[nodiscard]] std::string FormerHolders(std::span<const Holder> holders);

}  // namespace KdPort
