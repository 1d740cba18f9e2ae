#include <gtest/gtest.h>

#include <string>

#include "../sorted_ports.h"

namespace {

using Log = std::vector<std::wstring>;

class LoggedPorts : public SortedPorts {
 public:
  using SortedPorts::SortedPorts;
  bool Rename(std::size_t child, const CWideString& newName) override {
    log.push_back(std::to_wstring(child) + L">" + newName.Text());
    return SortedPorts::Rename(child, newName);
  }
  Log log;
};

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
    LoggedPorts ports(row.names);
    EXPECT_TRUE(SortNames(row.names, ports)) << row.what;
    EXPECT_EQ(ports.log, row.log) << row.what;
    EXPECT_EQ(ports.names, row.result) << row.what;
  }
}

TEST(InstallSortPlan, WithoutAFreeNumberTheRestIsStillPlaced) {
  LoggedPorts ports({L"COM9", L"COM8", L"COM12", L"COM011"});
  ports.takenFrom = 2;
  EXPECT_TRUE(SortNames(ports.names, ports));
  EXPECT_EQ(ports.names, (Names{L"COM9", L"COM8", L"COM11", L"COM12"}));
}

TEST(InstallSortPlan, AFailedRenameEndsTheSorting) {
  LoggedPorts ports({L"COM7", L"COM6", L"COM5"});
  ports.failing = 2;
  EXPECT_FALSE(SortNames(ports.names, ports));
  EXPECT_EQ(ports.names, (Names{L"COM7", L"COM6", L"COM3"})) << "the holder stays where it stood aside";
  EXPECT_EQ(ports.log.size(), 2u);
}

TEST(InstallSortPlan, ADeclinedRenameIsSeenByTheNextStep) {
  LoggedPorts ports({L"COM9", L"COM07", L"COM8"});
  ports.declined = 1;  // port 0 stays COM9, so the last place is not free any more
  EXPECT_TRUE(SortNames(ports.names, ports));
  EXPECT_EQ(ports.log, (Log{L"0>COM7", L"2>COM3", L"1>COM8", L"2>COM07", L"0>COM3", L"2>COM9", L"0>COM07"}));
}

}  // namespace
