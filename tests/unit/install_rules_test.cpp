#include "install/install_rules.h"

#include <gtest/gtest.h>

#include "install/naming/com_names.h"

namespace {

TEST(InstallRules, BackupKeyKeepsTheLastCharacterOfTheMiddleSegment) {
  const struct {
    const wchar_t* id;
    const wchar_t* key;
  } cases[] = {
      {L"KDBUS\\PORT_8X\\1&2A&0&03", L"KDBUS_X_1&2A&0&03"},
      {L"KDBUS\\P\\1&2A", L"KDBUS_P_1&2A"},
      {L"KDBUS\\\\1&2A", L"KDBUS__1&2A"},
      {L"KDBUS\\PORT\\1\\2\\3", L"KDBUS_T_1_2_3"},
      {L"KDBUS\\PORT", L"KDBUS_PORT"},
      {L"KDBUS", L"KDBUS"},
      {L"\\PORT\\7", L"_T_7"},
      {L"KDBUS\\PORT\\", L"KDBUS_T_"},
      {L"", L""},
  };
  for (const auto& row : cases) EXPECT_EQ(BackupKeyName(row.id), CWideString(row.key)) << "id " << row.id;
}

TEST(InstallRules, CapabilityValuesAreKnownByTheirName) {
  EXPECT_TRUE(IsCapabilityValue(L"Supported"));
  EXPECT_TRUE(IsCapabilityValue(L"BaudRatesSupportedMask"));
  EXPECT_FALSE(IsCapabilityValue(L"supported"));
  EXPECT_FALSE(IsCapabilityValue(L"Support"));
  EXPECT_FALSE(IsCapabilityValue(L""));
}

TEST(InstallRules, OnlyTheNumberOneForbidsTheUpdate) {
  for (const wchar_t* text : {L"1", L"01", L" 1", L"1x"}) EXPECT_TRUE(ForbidsDriverUpdate(text)) << text;
  for (const wchar_t* text : {L"", L"yes", L"0", L"2", L"-1", L"11", L"4294967297"}) {
    EXPECT_FALSE(ForbidsDriverUpdate(text)) << text;
  }
}

TEST(InstallRules, MajorVersionSevenIsLeftOutOfSorting) {
  const struct {
    std::uint32_t major;
    std::uint32_t minor;
    bool sorts;
  } cases[] = {{5, 2, false}, {6, 0, false}, {6, 1, true},  {6, 3, true},
               {7, 0, false}, {7, 9, false}, {10, 0, true}, {8, 0, true}};
  for (const auto& row : cases) {
    EXPECT_EQ(SortsPortNames(row.major, row.minor), row.sorts) << row.major << "." << row.minor;
  }
}

TEST(InstallRules, HardwareIdIsCutAtTheSecondBackslashAndRaised) {
  const struct {
    const wchar_t* id;
    const wchar_t* hardwareId;
  } cases[] = {
      {L"usb\\vid_3a7e&pid_5002&mi_01\\7&abc&0&0001", L"USB\\VID_3A7E&PID_5002&MI_01"},
      {L"USB\\VID_3A7E&PID_1015", L"USB\\VID_3A7E&PID_1015"},
      {L"usb\\\\x", L"USB\\"},
      {L"root", L"ROOT"},
      {L"", L""},
  };
  for (const auto& row : cases) EXPECT_EQ(HardwareIdOf(row.id), CWideString(row.hardwareId)) << row.id;
}

TEST(InstallRules, UsbModelsHaveTheirNumberAndTheirWayWithATakenOne) {
  const struct {
    const wchar_t* hardwareId;
    std::optional<std::int32_t> number;
    bool unasked;
  } cases[] = {
      {L"USB\\VID_3A7E&PID_1015", 2, true},
      {L"USB\\VID_3A7E&PID_5002&MI_00", 2, true},
      {L"USB\\VID_3A7E&PID_5002&MI_01", 4, true},
      {L"USB\\VID_3A7E&PID_1089", 89, false},
      {L"USB\\VID_3A7E&PID_5002", std::nullopt, false},
      {L"USB\\VID_3A7E&PID_1015&MI_00", std::nullopt, false},
      {L"", std::nullopt, false},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(FixedComNumber(row.hardwareId), row.number) << row.hardwareId;
    EXPECT_EQ(TakesNumberUnasked(row.hardwareId), row.unasked) << row.hardwareId;
  }
}

TEST(InstallRules, FreeNumbersEndWithTheUsageMap) {
  ComUsage usage{};
  EXPECT_FALSE(IsNumberFree(usage, 0));
  EXPECT_TRUE(IsNumberFree(usage, 1));
  EXPECT_TRUE(IsNumberFree(usage, 256));
  EXPECT_FALSE(IsNumberFree(usage, 257));
  EXPECT_FALSE(IsNumberFree(usage, 0xFFFFFFFF));
  usage[255] = 1;
  EXPECT_FALSE(IsNumberFree(usage, 256));
  EXPECT_TRUE(IsNumberFree(usage, 255));
}

TEST(InstallRules, SearchForAFreeNumberKeepsToItsRange) {
  ComUsage usage;
  usage.fill(1);
  EXPECT_EQ(FirstFreeNumber(usage, 3, 255), std::nullopt);
  usage[0] = usage[1] = usage[255] = 0;
  EXPECT_EQ(FirstFreeNumber(usage, 3, 255), std::nullopt);
  usage[254] = 0;
  EXPECT_EQ(FirstFreeNumber(usage, 3, 255), 255u);
  usage[2] = 0;
  EXPECT_EQ(FirstFreeNumber(usage, 3, 255), 3u);
}

TEST(InstallRules, AMovedHolderEndsOnTheSizeOfItsNameWhenEverythingIsTaken) {
  ComUsage usage;
  usage.fill(1);
  usage[254] = 0;  // 255 is past the end of this search
  EXPECT_EQ(NumberForMovedHolder(&usage, 5, L"COM4"), 10u);
  EXPECT_EQ(NumberForMovedHolder(&usage, 5, L"COM89"), 12u);
  EXPECT_EQ(NumberForMovedHolder(nullptr, 5, L"COM4"), 10u);
  usage[253] = 0;
  EXPECT_EQ(NumberForMovedHolder(&usage, 5, L"COM4"), 254u);
  usage[3] = 0;
  EXPECT_EQ(NumberForMovedHolder(&usage, 5, L"COM4"), 254u);
}

}  // namespace
