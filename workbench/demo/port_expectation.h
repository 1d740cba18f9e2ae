// What a port's page ought to show, worked out from what the device and the drivers said.
//
// Written from the device server's manual, apart from the product's code, so that the two can disagree.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/demo/expected_control.h"
#include "workbench/device_server/port_state.h"
#include "workbench/simulated_driver/set_layout.h"

namespace workbench {

struct ExpectedCheckBox {
  bool checked = false;
  bool enabled = true;
};
struct PageExpectation {
  std::vector<ExpectedControl> texts;  // the eight values
  bool duplexShown = false;
  ExpectedCheckBox cts{};
  ExpectedCheckBox dsr{};
  // What the drivers hold after the page has opened.
  ParameterValues port{kPortSet};
  ParameterValues bus{kBusSet};
};

// `device` is what the device's status document says, nothing when it could not be had; `port` and `bus`
// are the drivers' values before the page is opened.
[[nodiscard]] PageExpectation ExpectPage(const std::optional<PortState>& device, const ParameterValues& port,
                                         const ParameterValues& bus);

}  // namespace workbench
