#include "workbench/device_server/port_state.h"

#include <array>

namespace workbench {
namespace {

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

std::span<const StateTag> StateTags() {
  return kTags;
}

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

std::string ConfigurationPage(unsigned portNumber, const PortState& state) {
  const std::string title = "Serial port " + std::to_string(portNumber);
  std::string page = "<!DOCTYPE html>\r\n<html><head><title>" + title + "</title></head>\r\n<body><h1>" +
                     title + "</h1>\r\n<table>\r\n";
  for (const StateTag& tag : kTags) {
    const std::optional<unsigned> value = state.*tag.value;
    page.append("<tr><th>").append(tag.name).append("</th><td>");
    page.append(value ? std::to_string(*value) : "-").append("</td></tr>\r\n");
  }
  return page + "</table></body></html>\r\n";
}

}  // namespace workbench
