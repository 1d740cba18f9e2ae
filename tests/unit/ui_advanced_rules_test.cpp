// Decisions of the advanced sheet's pages.
#include <gtest/gtest.h>

#include <string>

#include "ui/framework/link_text.h"
#include "ui/tcp_ip_rules.h"

namespace {

TEST(UiTcpIpRules, VerificationIsOnUnlessBothChecksAreIgnored) {
  struct Row {
    std::uint32_t model, protocol;
    bool shown, untouchedWrites;
  };
  for (const Row& row : {Row{0, 0, true, false}, Row{0, 1, true, true}, Row{7, 0, true, true},
                         Row{1, 1, false, false}, Row{2, 1, false, true}}) {
    CKdNBusUserModeInterface set;
    set.IgnoreModelChecking = row.model;
    set.IgnoreForceProtocol = row.protocol;
    const TcpIpFields fields = FieldsOf(set);
    EXPECT_EQ(fields.verification, row.shown) << row.model << row.protocol;
    EXPECT_EQ(ApplyFields(set, fields), row.untouchedWrites) << row.model << row.protocol;
    EXPECT_EQ(set.IgnoreModelChecking, row.shown ? 0u : 1u);
    EXPECT_EQ(set.IgnoreForceProtocol, set.IgnoreModelChecking);
  }
}

TEST(UiLinkText, ColourIsThreeBytesInDecimal) {
  const std::pair<const wchar_t*, std::optional<std::uint32_t>> rows[] = {
      {L"128,64,0", 0x004080},    {L" 1, 2 ,3 ", 0x030201},   {L"0,0", std::nullopt},
      {L"0,0,0,0", std::nullopt}, {L"0,0,256", std::nullopt}, {L"0,,0", std::nullopt},
      {L"-1,0,0", std::nullopt},  {L"1 2,0,0", std::nullopt}, {L"4294967296,0,0", std::nullopt}};
  for (const auto& [text, colour] : rows) EXPECT_EQ(ParseLinkColour(text), colour) << text;
}

TEST(UiLinkText, TagsMarkTheLink) {
  struct Row {
    const wchar_t* text;
    bool tags;
    const wchar_t *before, *link, *after;
  };
  const Row rows[] = {{L"See <A>us</A>.", true, L"See ", L"us", L"."},
                      {L"See <a>us</a>.", true, L"See ", L"us", L"."},
                      {L"See <A>us</A>.", false, L"", L"See <A>us</A>.", L""},
                      {L"<A>open", true, L"", L"<A>open", L""},
                      {L"", true, L"", L"", L""}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    const LinkText parts = SplitLinkText(row.text, row.tags);
    EXPECT_EQ(parts.before, row.before);
    EXPECT_EQ(parts.link, row.link);
    EXPECT_EQ(parts.after, row.after);
  }
}

}  // namespace
