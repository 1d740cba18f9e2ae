#include "install/sort_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "base/decimal.h"
#include "install/com_names.h"

namespace {

using Names = std::vector<CWideString>;

// A device server with its ports and the numbers that are taken.
class FakeServer : public CSortSteps {
 public:
  explicit FakeServer(Names portNames) : names(std::move(portNames)) {
    for (const CWideString& name : names) taken.insert(ComNumberOf(name.View()));
  }
  std::optional<std::int32_t> FreeNumber() override {
    ++searches;
    for (std::int32_t number = 3; number <= lastNumber; ++number) {
      if (taken.count(number) == 0) return number;
    }
    return std::nullopt;
  }
  bool Rename(std::size_t child, const CWideString& newName) override {
    log.push_back(std::to_wstring(child) + L">" + newName.Text());
    if (log.size() == failingRename) return false;
    if (log.size() == declinedRename) return true;
    taken.erase(ComNumberOf(names[child].View()));
    taken.insert(ComNumberOf(newName.View()));
    names[child] = newName;
    return true;
  }
  void ReadName(std::size_t child, CWideString& name) override {
    ++reads;
    name = names[child];
  }

  Names names;
  std::multiset<std::int32_t> taken;
  std::int32_t lastNumber = 255;
  std::size_t failingRename = 0;   // which one, from 1; 0 for none
  std::size_t declinedRename = 0;  // which one, from 1; 0 for none
  std::vector<std::wstring> log;
  std::size_t searches = 0;
  std::size_t reads = 0;
};

using Log = std::vector<std::wstring>;

TEST(InstallSortPlan, OnlyFallingNumbersNeedSorting) {
  EXPECT_FALSE(NeedsSorting({}));
  EXPECT_FALSE(NeedsSorting({L"COM7"}));
  EXPECT_FALSE(NeedsSorting({L"COM3", L"COM4"}));
  EXPECT_FALSE(NeedsSorting({L"COM4", L"COM4"}));
  EXPECT_FALSE(NeedsSorting({L"LPT", L"COM1"}));
  EXPECT_TRUE(NeedsSorting({L"COM4", L"COM3"}));
  EXPECT_TRUE(NeedsSorting({L"COM10", L"COM9"}));
}

TEST(InstallSortPlan, RenamesAndTheirOrder) {
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
      {"the temporary number is not one of the ports'",
       {L"COM4", L"COM3"},
       {L"1>COM5", L"0>COM3", L"1>COM4"},
       {L"COM3", L"COM4"}},
      {"a name that only looks like the target is no holder",
       {L"COM9", L"COM07"},
       {L"0>COM7", L"1>COM9"},
       {L"COM7", L"COM9"}},
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
    FakeServer server(row.names);
    EXPECT_TRUE(SortNames(row.names, server)) << row.what;
    EXPECT_EQ(server.log, row.log) << row.what;
    EXPECT_EQ(server.names, row.result) << row.what;
  }
}

TEST(InstallSortPlan, WithoutAFreeNumberTheRestIsStillPlaced) {
  FakeServer server({L"COM9", L"COM8", L"COM12", L"COM011"});
  server.lastNumber = 2;
  EXPECT_TRUE(SortNames(server.names, server));
  EXPECT_EQ(server.names, (Names{L"COM9", L"COM8", L"COM11", L"COM12"}));
}

TEST(InstallSortPlan, AFailedRenameEndsTheSorting) {
  FakeServer server({L"COM7", L"COM6", L"COM5"});
  server.failingRename = 2;
  EXPECT_FALSE(SortNames(server.names, server));
  EXPECT_EQ(server.names, (Names{L"COM7", L"COM6", L"COM3"})) << "the holder stays where it stood aside";
  EXPECT_EQ(server.log.size(), 2u);
}

TEST(InstallSortPlan, ADeclinedRenameIsSeenByTheNextStep) {
  FakeServer server({L"COM9", L"COM07", L"COM8"});
  server.declinedRename = 1;  // port 0 stays COM9, so the last place is not free any more
  EXPECT_TRUE(SortNames(server.names, server));
  EXPECT_EQ(server.log, (Log{L"0>COM7", L"2>COM3", L"1>COM8", L"2>COM07", L"0>COM3", L"2>COM9", L"0>COM07"}));
}

TEST(InstallSortPlan, StepsGrowWithTheNumberOfPorts) {
  for (const std::int32_t count : {2, 8, 32, 128, 252}) {
    Names names;
    for (std::int32_t at = 0; at < count; ++at) names.push_back(ComNameOf(255 - at));
    FakeServer server(names);
    ASSERT_TRUE(SortNames(names, server));
    EXPECT_TRUE(!NeedsSorting(server.names)) << count;
    const auto swaps = static_cast<std::size_t>(count) / 2;
    EXPECT_EQ(server.log.size(), 3 * swaps);
    EXPECT_EQ(server.reads, 3 * swaps);
    EXPECT_EQ(server.searches, swaps);
  }
}

}  // namespace
