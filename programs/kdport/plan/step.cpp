#include "kdport/plan/step.h"

namespace KdPort {

std::string_view WordOf(StepKind kind) noexcept {
  constexpr std::string_view kWords[] = {"rename", "store", "mend", "release"};
  return kWords[static_cast<std::size_t>(kind)];
}

std::string_view WordOf(Place place) noexcept {
  constexpr std::string_view kWords[] = {"none", "friendly-name", "dos-device", "serial-map", "database"};
  return kWords[static_cast<std::size_t>(place)];
}

}  // namespace KdPort
