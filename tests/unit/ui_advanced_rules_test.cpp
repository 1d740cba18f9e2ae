// Decisions of the advanced sheet's pages.
#include <gtest/gtest.h>

#include <string>

#include "status/address_text.h"
#include "ui/device_rules.h"
#include "ui/framework/link_text.h"
#include "ui/tcp_ip_rules.h"

namespace {

TEST(UiAddressText, MacTakesTheThreeLowBytesOfEachHalf) {
  EXPECT_EQ(MacText(0x112233, 0x445566), L"11:22:33:44:55:66");
  EXPECT_EQ(MacText(0xFF000A0B, 0xEE00C00D), L"00:0A:0B:00:C0:0D") << "high bytes are no part of it";
}

TEST(UiAddressText, Ipv4BeginsWithTheMostSignificantByte) {
  EXPECT_EQ(Ipv4Text(0xC0A80001), L"192.168.0.1");
  EXPECT_EQ(Ipv4Text(0), L"0.0.0.0");
  EXPECT_EQ(Ipv4Text(0xFFFFFFFF), L"255.255.255.255");
}

// A set whose parameters all differ from the fields of kUntouched in nothing.
void Describe(CKdNBusUserModeInterface& set) {
  set.AddressToConnect = 0xC0A80001;
  set.PortNumber = 4001;
  set.ConnectionAttemptTimeout = 5;
  set.ConnectionIdleTimeout = 60;
}
constexpr TcpIpFields kUntouched{
    .tcpPort = 4001, .attemptTimeout = 5, .idleTimeout = 60, .verification = true};

TEST(UiTcpIpRules, WhatTheFieldsShowWritesNothing) {
  CKdNBusUserModeInterface set;
  Describe(set);
  EXPECT_FALSE(AdoptFields(set, FieldsOf(set)));
  EXPECT_FALSE(AdoptFields(set, kUntouched));
}

TEST(UiTcpIpRules, EveryFieldIsAChangeOfItsOwn) {
  struct Row {
    const char* name;
    void (*edit)(TcpIpFields&);
    std::uint32_t CKdNBusUserModeInterface::*parameter;
    std::uint32_t expected;
  };
  const Row rows[] = {
      {"port", [](TcpIpFields& f) { f.tcpPort = 0; }, &CKdNBusUserModeInterface::PortNumber, 0},
      {"attempt", [](TcpIpFields& f) { f.attemptTimeout = 20; },
       &CKdNBusUserModeInterface::ConnectionAttemptTimeout, 20},
      {"idle", [](TcpIpFields& f) { f.idleTimeout = 61; }, &CKdNBusUserModeInterface::ConnectionIdleTimeout,
       61},
      {"model", [](TcpIpFields& f) { f.verification = false; },
       &CKdNBusUserModeInterface::IgnoreModelChecking, 1},
      {"protocol", [](TcpIpFields& f) { f.verification = false; },
       &CKdNBusUserModeInterface::IgnoreForceProtocol, 1},
  };
  for (const Row& row : rows) {
    CKdNBusUserModeInterface set;
    Describe(set);
    TcpIpFields fields = kUntouched;
    row.edit(fields);
    EXPECT_TRUE(AdoptFields(set, fields)) << row.name;
    EXPECT_EQ(set.*row.parameter, row.expected) << row.name;
    EXPECT_EQ(set.AddressToConnect, 0xC0A80001u) << row.name;
  }
}

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
    EXPECT_EQ(AdoptFields(set, fields), row.untouchedWrites) << row.model << row.protocol;
    EXPECT_EQ(set.IgnoreModelChecking, row.shown ? 0u : 1u);
    EXPECT_EQ(set.IgnoreForceProtocol, set.IgnoreModelChecking);
  }
}

TEST(UiTcpIpRules, RestoreKeepsTheTcpPort) {
  CKdNBusUserModeInterface current;
  Describe(current);
  CKdNBusUserModeInterface defaults;
  defaults.PortNumber = 5300;
  defaults.ConnectionAttemptTimeout = 3;
  defaults.ConnectionIdleTimeout = 0;
  defaults.IgnoreModelChecking = 1;
  defaults.IgnoreForceProtocol = 1;
  const TcpIpFields fields = RestoredFields(current, defaults);
  EXPECT_EQ(fields.tcpPort, 4001u);
  EXPECT_EQ(fields.attemptTimeout, 3u);
  EXPECT_EQ(fields.idleTimeout, 0u);
  EXPECT_FALSE(fields.verification);
  defaults.IgnoreForceProtocol = 0;
  EXPECT_TRUE(RestoredFields(current, defaults).verification);
}

TEST(UiDeviceRules, HighPerformanceIsTheInverseOfItsParameter) {
  CKdNBusUserModeInterface set;
  EXPECT_EQ(SwitchesOf(set), (DeviceSwitches{.connectOffline = false, .highPerformance = true}));
  set.ForceCOMPortConnect = 9;
  set.RealTxFifoEmulation = 4;
  EXPECT_EQ(SwitchesOf(set), (DeviceSwitches{.connectOffline = true, .highPerformance = false}));
  AdoptSwitches(set, {.connectOffline = true, .highPerformance = false});
  EXPECT_EQ(set.ForceCOMPortConnect, 1u);
  EXPECT_EQ(set.RealTxFifoEmulation, 1u);
  AdoptSwitches(set, {.connectOffline = false, .highPerformance = true});
  EXPECT_EQ(set.ForceCOMPortConnect, 0u);
  EXPECT_EQ(set.RealTxFifoEmulation, 0u);
}

TEST(UiDeviceRules, ComNameIsTheEntryWithoutItsMarks) {
  EXPECT_EQ(ChosenComName(L"COM7"), L"COM7");
  EXPECT_EQ(ChosenComName(L"COM7 (in use)"), L"COM7");
  EXPECT_EQ(ChosenComName(L"COM7 (in use) (in use)"), L"COM7");
  EXPECT_EQ(ChosenComName(L"COM7(in use)"), L"COM7(in use)");
  EXPECT_EQ(ChosenComName(L""), L"");
}

TEST(UiDeviceRules, DuplexDefaultOfZeroRestoresAsRs422) {
  EXPECT_EQ(RestoredDuplexMode(0), 1u);
  EXPECT_EQ(RestoredDuplexMode(1), 1u);
  EXPECT_EQ(RestoredDuplexMode(2), 2u);
}

TEST(UiLinkText, ColourIsThreeBytesInDecimal) {
  struct Row {
    const wchar_t* text;
    std::optional<std::uint32_t> colour;
  };
  const Row rows[] = {
      {L"0,0,255", 0xFF0000},     {L"128,0,128", 0x800080},   {L" 1, 2 ,3 ", 0x030201},
      {L"255,255,255", 0xFFFFFF}, {L"", std::nullopt},        {L"0,0", std::nullopt},
      {L"0,0,0,0", std::nullopt}, {L"0,0,256", std::nullopt}, {L"0,,0", std::nullopt},
      {L"-1,0,0", std::nullopt},  {L"0x1,0,0", std::nullopt}, {L"1 2,0,0", std::nullopt},
      {L"blue", std::nullopt},    {L"0,0,0,", std::nullopt},  {L"4294967296,0,0", std::nullopt}};
  for (const Row& row : rows)
    EXPECT_EQ(ParseLinkColour(row.text), row.colour) << testing::PrintToString(row.text);
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
                      {L"<A></A>", true, L"", L"", L""},
                      {L"</A> first <A>", true, L"", L"</A> first <A>", L""},
                      {L"<A>open", true, L"", L"<A>open", L""},
                      {L"", true, L"", L"", L""}};
  for (const Row& row : rows) {
    const LinkText parts = SplitLinkText(row.text, row.tags);
    EXPECT_EQ(parts.before, row.before) << testing::PrintToString(row.text);
    EXPECT_EQ(parts.link, row.link) << testing::PrintToString(row.text);
    EXPECT_EQ(parts.after, row.after) << testing::PrintToString(row.text);
  }
}

}  // namespace
