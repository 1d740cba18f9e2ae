// The two parameter sets beside the drivers' own list of them.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "config/nbus_parameters.h"
#include "config/vcp_parameters.h"
#include "workbench/simulated_driver/set_layout.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Port = CKdUVcpUserModeInterface;
using Bus = CKdNBusUserModeInterface;
using workbench::ParameterValues;

Bytes Written(CSsInformationSet& set) {
  Bytes stream(set.GetSerialisedSize());
  auto room = static_cast<std::uint32_t>(stream.size());
  EXPECT_TRUE(set.Serialise(stream.data(), room));
  return stream;
}

// Fills the set with a stream that has a value of its own in each place, and writes it again.
void ExpectMemberForEachPlace(CSsInformationSet& set, std::uint32_t selector) {
  ParameterValues values(selector);
  std::uint32_t place = 0;
  for (const workbench::Parameter& parameter : workbench::SetLayout(selector)) {
    ++place;
    if (parameter.text != nullptr) values.SetText(parameter.name, "text " + std::to_string(place));
    if (parameter.text == nullptr) values.SetNumber(parameter.name, place);
  }
  Bytes stream;
  for (const std::byte byte : values.Encode()) stream.push_back(std::to_integer<std::uint8_t>(byte));
  auto unread = static_cast<std::uint32_t>(stream.size());
  EXPECT_TRUE(set.Deserialise(stream.data(), unread));
  EXPECT_EQ(unread, 0U);
  EXPECT_EQ(Written(set), stream);
}

void ExpectNamesOfTheDrivers(const CSsInformationSet& set, std::uint32_t selector) {
  const auto layout = workbench::SetLayout(selector);
  ASSERT_EQ(set.Items().size(), layout.size());
  for (std::size_t i = 0; i < layout.size(); ++i) {
    const std::string name = layout[i].name;
    EXPECT_EQ(set.Items()[i]->name, CWideString(std::wstring(name.begin(), name.end())));
  }
}

TEST(ConfigParametersTest, StreamOfTheDriverFillsAMemberForEachOfItsNames) {
  Port port;
  ExpectNamesOfTheDrivers(port, Port::kSelector);
  ExpectMemberForEachPlace(port, Port::kSelector);
  Bus bus;
  ExpectNamesOfTheDrivers(bus, Bus::kSelector);
  ExpectMemberForEachPlace(bus, Bus::kSelector);
}

}  // namespace
