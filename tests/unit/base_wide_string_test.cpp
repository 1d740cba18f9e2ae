#include "base/wide_string.h"

#include <gtest/gtest.h>

#include <string>

#include "base/decimal.h"

namespace {

TEST(WideStringTest, CopiesShareTextUntilOneIsChanged) {
  CWideString first(L"COM7");
  const CWideString second = first;
  EXPECT_EQ(first.Text(), second.Text());
  first += L"7";
  EXPECT_EQ(first, L"COM77");
  EXPECT_EQ(second, L"COM7");
  first.MakeLower();
  EXPECT_EQ(first, L"com77");
}

TEST(WideStringTest, FormatsEveryConversionTheSystemUses) {
  EXPECT_EQ(CWideString::Format(L"%d.%d", -1, 2147483647), L"-1.2147483647");
  EXPECT_EQ(CWideString::Format(L"(%s:%u)", CWideString(L"10.0.0.1"), 4294967295U), L"(10.0.0.1:4294967295)");
  EXPECT_EQ(CWideString::Format(L"%02X:%02X", 0x1U, 0xABU), L"01:AB");
  EXPECT_EQ(CWideString::Format(L"%d,%c%%", 9, L'n'), L"9,n%");
  EXPECT_EQ(CWideString::Format(L"%x", 0x80070005U), L"80070005");
}

TEST(WideStringTest, FailedConversionKeepsTextAndSetsErrorState) {
  CWideString text(L"old");
  EXPECT_FALSE(text.AssignNarrow("caf\x80"));
  EXPECT_EQ(text.ErrorState(), CWideString::kFailed);
  EXPECT_EQ(text, L"old");
  EXPECT_TRUE(text.AssignNarrow("TCP"));
  EXPECT_EQ(text.ErrorState(), CWideString::kGood);
  EXPECT_EQ(text, L"TCP");
  EXPECT_EQ(CWideString(L"QX-582").ToNarrow(2), "QX");
  EXPECT_EQ(CWideString(L"caf\u00E9").ToNarrow(3), "caf");
  EXPECT_EQ(CWideString(L"caf\x80").ToNarrow(4), std::nullopt);
}

struct DecimalCase {
  const wchar_t* text;
  std::int32_t value;
};

TEST(DecimalTest, ReadsLikeTheRuntimeOfWindows) {
  const DecimalCase cases[] = {
      {L"", 0},
      {L"  \t42x", 42},
      {L"-1", -1},
      {L"+7", 7},
      {L"- 7", 0},
      {L"2147483648", INT32_MAX},
      {L"-2147483648", INT32_MIN},
      {L"-99999999999999999999999", INT32_MIN},
  };
  for (const DecimalCase& c : cases) EXPECT_EQ(ParseDecimal(c.text), c.value) << c.text;
}

TEST(DecimalTest, ComNumberIsWhatFollowsThreeCharacters) {
  const DecimalCase cases[] = {{L"COM7", 7}, {L"COM", 0}, {L"", 0}, {L"LPT12a", 12}, {L"COM-3", -3}};
  for (const DecimalCase& c : cases) EXPECT_EQ(ComNumberOf(c.text), c.value) << c.text;
}

}  // namespace
