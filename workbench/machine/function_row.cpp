#include "workbench/machine/function_row.h"

#include <array>

#include "workbench/machine/machine.h"

namespace workbench {

const char* NameOf(HandleKind kind) {
  static constexpr std::array kNames = {
      "none",         "file",   "driver file", "COM port file", "registry key", "device set",
      "COM database", "mutex",  "event",       "process",       "thread",       "internet",
      "GDI object",   "cursor", "window",      "local memory",  "module",       "activation context"};
  return kNames.at(static_cast<std::size_t>(kind));
}

}  // namespace workbench
