// What the pages of a port's advanced sheet ought to show, worked out from the drivers and the COM name
// database.
//
// Written from the drivers' manual, apart from the product's code, so that the two can disagree.
#pragma once

#include <string>
#include <vector>

#include "workbench/demo/expected_control.h"
#include "workbench/simulated_driver/set_layout.h"

namespace workbench {

// `bus` is the network bus driver's set, `comName` the port's name ("COM5").
[[nodiscard]] std::vector<ExpectedControl> ExpectDevicePage(const ParameterValues& bus,
                                                            const std::wstring& comName);
[[nodiscard]] std::vector<ExpectedControl> ExpectTcpIpPage(const ParameterValues& bus);
[[nodiscard]] std::vector<ExpectedControl> ExpectAboutPage();

// The names that a port's list marks as in use: `claimed` are the numbers that the database has, ascending.
[[nodiscard]] std::vector<std::wstring> ExpectNamesInUse(const std::vector<unsigned long>& claimed,
                                                         const std::wstring& comName);

}  // namespace workbench
