#include "install/naming/sort_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "base/decimal.h"
#include "install/naming/com_names.h"

namespace {

using Log = std::vector<std::wstring>;
using Names = std::vector<CWideString>;

// A device server's ports, whose names change as sorting asks for it.
class SortedPorts : public CSortSteps {
 public:
  explicit SortedPorts(Names present) : names(std::move(present)) {}

  std::optional<std::int32_t> FreeNumber() override {
    ComUsage usage{};
    std::fill(usage.begin() + takenFrom, usage.end(), std::uint8_t{1});
    for (const CWideString& name : names) {
      const auto number = static_cast<std::uint32_t>(ComNumberOf(name.View()));
      if (number >= 1 && number <= usage.size()) usage[number - 1] = 1;
    }
    const auto number = FirstFreeNumber(usage, 3, 255);
    return number ? std::optional(static_cast<std::int32_t>(*number)) : std::nullopt;
  }
  bool Rename(std::size_t child, const CWideString& newName) override {
    log.push_back(std::to_wstring(child) + L">" + newName.Text());
    if (log.size() == failing) return false;
    if (log.size() != declined) names.at(child) = newName;
    return true;
  }
  void ReadName(std::size_t child, CWideString& name) override { name = names.at(child); }

  Names names;
  Log log;                      // every rename that was asked for
  std::size_t takenFrom = 255;  // no greater number is free
  std::size_t failing = 0;      // which rename, from 1; 0 for none
  std::size_t declined = 0;     // which rename, from 1; 0 for none
};

TEST(InstallSortPlan, OnlyFallingNumbersNeedSorting) {
  EXPECT_FALSE(NeedsSorting({}));
  EXPECT_FALSE(NeedsSorting({L"COM4", L"COM4"}));
  EXPECT_TRUE(NeedsSorting({L"COM10", L"COM9"}));
}

TEST(InstallSortPlan, RenamesComeInTheStatedOrder) {
  const struct {
    const char* what;
    Names names;
    Log log;
    Names result;
  } cases[] = {
      {"rotated ports swap through the first free number",
       {L"COM7", L"COM5", L"COM6"},
       {L"1>COM3", L"0>COM5", L"1>COM7", L"2>COM3", L"1>COM6", L"2>COM7"},
       {L"COM5", L"COM6", L"COM7"}},
      {"names in small letters are no holders",
       {L"COM9", L"com8"},
       {L"0>COM8", L"1>COM9"},
       {L"COM8", L"COM9"}},
      {"of two holders of one name the first gives way, though it was placed already",
       {L"COM9", L"COM8", L"COM8"},
       {L"1>COM3", L"0>COM8", L"1>COM9", L"0>COM3", L"1>COM8", L"0>COM9", L"0>COM3", L"2>COM9", L"0>COM8"},
       {L"COM8", L"COM8", L"COM9"}},
      {"a name without a number counts as 0", {L"COM5", L"COMx"}, {L"0>COM0", L"1>COM5"}, {L"COM0", L"COM5"}},
  };
  for (const auto& row : cases) {
    SortedPorts ports(row.names);
    EXPECT_TRUE(SortNames(row.names, ports)) << row.what;
    EXPECT_EQ(ports.log, row.log) << row.what;
    EXPECT_EQ(ports.names, row.result) << row.what;
  }
}

TEST(InstallSortPlan, EveryOrderOfFivePortsEndsSortedWithItsOwnNames) {
  const Names sorted = {L"COM3", L"COM9", L"COM10", L"COM99", L"COM255"};
  std::vector<std::size_t> order = {0, 1, 2, 3, 4};
  do {
    Names names;
    for (const std::size_t at : order) names.push_back(sorted[at]);
    SCOPED_TRACE(testing::PrintToString(order));
    SortedPorts ports(names);
    EXPECT_TRUE(SortNames(names, ports));
    EXPECT_EQ(ports.names, sorted);
    EXPECT_LE(ports.log.size(), 3 * names.size());
    for (std::size_t failing = 1; failing <= ports.log.size(); ++failing) {
      SortedPorts stopped(names);
      stopped.failing = failing;
      EXPECT_FALSE(SortNames(names, stopped));
      EXPECT_EQ(stopped.log.size(), failing) << "nothing is renamed after a failure";
    }
  } while (std::ranges::next_permutation(order).found);
}

TEST(InstallSortPlan, WithoutAFreeNumberTheRestIsStillPlaced) {
  SortedPorts ports({L"COM9", L"COM8", L"COM12", L"COM011"});
  ports.takenFrom = 2;
  EXPECT_TRUE(SortNames(ports.names, ports));
  EXPECT_EQ(ports.names, (Names{L"COM9", L"COM8", L"COM11", L"COM12"}));
}

TEST(InstallSortPlan, ADeclinedRenameIsSeenByTheNextStep) {
  SortedPorts ports({L"COM9", L"COM07", L"COM8"});
  ports.declined = 1;  // port 0 stays COM9, so the last place is not free any more
  EXPECT_TRUE(SortNames(ports.names, ports));
  EXPECT_EQ(ports.log, (Log{L"0>COM7", L"2>COM3", L"1>COM8", L"2>COM07", L"0>COM3", L"2>COM9", L"0>COM07"}));
}

}  // namespace
