#include "install/install_rules.h"

#include <gtest/gtest.h>

#include "install/naming/com_names.h"

namespace {

TEST(InstallRules, BackupKeyKeepsOneCharacterOfTheMiddleSegment) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"KDBUS\\PORT_8X\\1&2A&0&03", L"KDBUS_X_1&2A&0&03"},
      {L"KDBUS\\\\1&2A", L"KDBUS__1&2A"},
      {L"KDBUS\\PORT", L"KDBUS_PORT"},
  };
  for (const auto& [id, key] : cases) EXPECT_EQ(BackupKeyName(id), key) << id;
}

TEST(InstallRules, ValueWithSupportedInItsNameIsACapability) {
  for (const wchar_t* name : {L"Supported", L"BaudRatesSupportedMask"}) EXPECT_TRUE(IsCapabilityValue(name));
  for (const wchar_t* name : {L"supported", L"Support", L""}) EXPECT_FALSE(IsCapabilityValue(name));
}

TEST(InstallRules, OnlyTheNumberOneForbidsTheUpdate) {
  for (const wchar_t* text : {L"1", L"01", L" 1", L"1x"}) EXPECT_TRUE(ForbidsDriverUpdate(text)) << text;
  for (const wchar_t* text : {L"", L"0", L"2", L"11"}) {
    EXPECT_FALSE(ForbidsDriverUpdate(text)) << text;
  }
}

TEST(InstallRules, WindowsFromSixOneOnSortsExceptMajorVersionSeven) {
  using Version = std::pair<std::uint32_t, std::uint32_t>;
  for (const auto& [major, minor] : {Version{6, 1}, {6, 3}, {8, 0}, {10, 0}}) {
    EXPECT_TRUE(SortsPortNames(major, minor)) << major << "." << minor;
  }
  for (const auto& [major, minor] : {Version{5, 2}, {6, 0}, {7, 0}, {7, 9}}) {
    EXPECT_FALSE(SortsPortNames(major, minor)) << major << "." << minor;
  }
}

TEST(InstallRules, HardwareIdIsCutAtTheSecondBackslashAndRaised) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"usb\\vid_3a7e&pid_5002&mi_01\\7&abc&0&0001", L"USB\\VID_3A7E&PID_5002&MI_01"},
      {L"USB\\VID_3A7E&PID_1015", L"USB\\VID_3A7E&PID_1015"},
      {L"usb\\\\x", L"USB\\"},
  };
  for (const auto& [id, hardwareId] : cases) EXPECT_EQ(HardwareIdOf(id), hardwareId) << id;
}

TEST(InstallRules, UsbModelsHaveTheirNumberAndThreeTakeItUnasked) {
  const struct {
    const wchar_t* hardwareId;
    std::optional<std::int32_t> number;
    bool unasked;
  } cases[] = {
      {L"USB\\VID_3A7E&PID_1015", 2, true},
      {L"USB\\VID_3A7E&PID_5002&MI_00", 2, true},
      {L"USB\\VID_3A7E&PID_5002&MI_01", 4, true},
      {L"USB\\VID_3A7E&PID_1089", 89, false},
      {L"USB\\VID_3A7E&PID_1015&MI_00", std::nullopt, false},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(FixedComNumber(row.hardwareId), row.number) << row.hardwareId;
    EXPECT_EQ(TakesNumberUnasked(row.hardwareId), row.unasked) << row.hardwareId;
  }
}

TEST(InstallRules, NumbersOutsideTheUsageMapAreNotFree) {
  ComUsage usage{};
  for (const std::uint32_t number : {1U, 256U}) EXPECT_TRUE(IsNumberFree(usage, number)) << number;
  for (const std::uint32_t number : {0U, 257U, 0xFFFFFFFFU}) {
    EXPECT_FALSE(IsNumberFree(usage, number)) << number;
  }
}

TEST(InstallRules, SearchForAFreeNumberKeepsToItsRange) {
  const struct {
    std::vector<std::size_t> free;  // numbers
    std::optional<std::uint32_t> from3To255;
    std::uint32_t forHolderOfCom4;  // searched from 5 to 254; else twice the size of its name with its end
  } cases[] = {
      {{}, std::nullopt, 10}, {{1, 2, 256}, std::nullopt, 10},
      {{255}, 255, 10},       {{254, 255}, 254, 254},
      {{4, 254}, 4, 254},     {{3, 5}, 3, 5},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(testing::PrintToString(row.free));
    ComUsage usage;
    usage.fill(1);
    for (const std::size_t number : row.free) usage[number - 1] = 0;
    EXPECT_EQ(FirstFreeNumber(usage, 3, 255), row.from3To255);
    EXPECT_EQ(NumberForMovedHolder(&usage, 5, L"COM4"), row.forHolderOfCom4);
  }
  EXPECT_EQ(NumberForMovedHolder(nullptr, 5, L"COM89"), 12u) << "an unreadable database has no free number";
}

}  // namespace
