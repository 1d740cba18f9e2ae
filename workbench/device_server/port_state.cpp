#include "workbench/device_server/port_state.h"

#include <array>
#include <string_view>

namespace workbench {
namespace {

// One tag of the status document.
using StateValue = std::optional<unsigned> PortState::*;
struct StateTag {
  std::string_view name;
  StateValue value;
};
constexpr std::array kTags = {
    StateTag{"state", &PortState::state},
    StateTag{"portmode", &PortState::portMode},
    StateTag{"baud", &PortState::baudRate},
    StateTag{"datasize", &PortState::dataBits},
    StateTag{"parity", &PortState::parity},
    StateTag{"stopbits", &PortState::stopBits},
    StateTag{"flowcontrol", &PortState::flowControl},
    StateTag{"duplex", &PortState::duplex},
    StateTag{"ctsline", &PortState::ctsLine},
    StateTag{"dsrline", &PortState::dsrLine},
};

}  // namespace

std::string StatusDocument(const PortState& state) {
  std::string document = "<port>\r\n";
  for (const StateTag& tag : kTags) {
    const std::optional<unsigned> value = state.*tag.value;
    if (!value) continue;
    document.append("<").append(tag.name).append(">").append(std::to_string(*value));
    document.append("</").append(tag.name).append(">\r\n");
  }
  return document + "</port>\r\n";
}

}  // namespace workbench
