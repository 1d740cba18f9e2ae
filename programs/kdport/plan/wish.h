// What somebody wants of one port.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "kdport/model/fields.h"

namespace KdPort {

struct Wish {
  std::size_t port = 0;                // its place in the host's list
  std::optional<std::int32_t> number;  // the COM number, from 1 to 255
  CFieldValues values;
};

}  // namespace KdPort
