#include "base/wide_string.h"

#include <gtest/gtest.h>

#include <string>

#include "base/decimal.h"
#include "base/utf16.h"

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

TEST(WideStringTest, NullAndEmptyAreTheEmptyText) {
  const CWideString fromNull(static_cast<const wchar_t*>(nullptr));
  EXPECT_TRUE(fromNull.IsEmpty());
  EXPECT_STREQ(fromNull.Text(), L"");
  EXPECT_EQ(fromNull, CWideString(L""));
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

TEST(WideStringTest, ReplaceFindsEveryOccurrenceOnce) {
  CWideString name(L"Port (COM1) COM1COM11");
  EXPECT_EQ(name.Replace(L"COM1", L"COM12"), 3U);
  EXPECT_EQ(name, L"Port (COM12) COM12COM121");
  EXPECT_EQ(name.Replace(L"", L"x"), 0U);
}

TEST(WideStringTest, PartsPastTheEndAreEmpty) {
  const CWideString text(L"COM7");
  EXPECT_EQ(text.Mid(3), L"7");
  EXPECT_EQ(text.Mid(1, 2), L"OM");
  EXPECT_EQ(text.Mid(4), L"");
  EXPECT_EQ(text.Mid(99, 1), L"");
}

TEST(Utf16Test, SurrogatesSurviveTheRoundTrip) {
  const std::u16string units = u"a\U0001F600b\xD800";
  EXPECT_EQ(ToUtf16(FromUtf16(units)), units);
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
