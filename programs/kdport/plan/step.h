// One change of a host, small enough that a command may end before it or after it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "kdport/model/fields.h"

namespace KdPort {

// The places besides "PortName" that hold a port's COM name.
enum class Place { None, FriendlyName, DosDevice, SerialMap, Database };

enum class StepKind { Rename, Store, Mend, Release };

struct Step {
  StepKind kind = StepKind::Rename;
  std::size_t port = 0;       // in the host's list; all kinds but Release
  std::int32_t from = 0;      // Rename
  std::int32_t to = 0;        // Rename; the number that Release releases
  CFieldValues values{};      // Store: what changes, of one group
  Place place = Place::None;  // Mend
};

// The words that JSON documents and tables call them by.
[[nodiscard]] std::string_view WordOf(StepKind kind) noexcept;
[[nodiscard]] std::string_view WordOf(Place place) noexcept;

}  // namespace KdPort
