#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "status/choice_list.h"
#include "status/com_name_list.h"
#include "status/ports_default.h"
#include "status/serial_words.h"

namespace {

TEST(SerialWordsTest, IndexesBecomeWords) {
  const struct {
    const char* what;
    CWideString (*wordOf)(std::uint32_t);
    std::vector<const wchar_t*> words;  // from 0 on
    const wchar_t* otherwise = L"None";
  } cases[] = {
      {"data bits", DataBitsIndexToText, {L"5", L"6", L"7", L"8"}, L""},
      {"parity", ParityIndexToText, {L"None", L"Odd", L"Even", L"Mark", L"Space"}},
      {"stop bits", StopBitsIndexToText, {L"1", L"1.5", L"2"}},
      {"flow control", FlowControlIndexToText, {L"None", L"CTS/RTS", L"DTR/DSR"}},  // Xon/Xoff has no word
  };
  for (const auto& row : cases) {
    for (std::uint32_t index = 0; index < 6; ++index) {
      const wchar_t* word = index < row.words.size() ? row.words[index] : row.otherwise;
      EXPECT_EQ(row.wordOf(index), word) << row.what << " " << index;
    }
  }
}

TEST(ChoiceListTest, MaskOffersChoicesAndEachMissingCommaCostsACharacter) {
  const struct {
    const wchar_t* text;
    std::uint32_t mask;
    ChoiceList list;
  } cases[] = {
      {L"a,b b, c,d,e,f", 6, {{L"b b", 2}, {L" c", 3}}},
      {L"a,b b, c,d,e,f", 16, {{L"e,f", 5}}},
      {L"A,B", 31, {{L"A", 1}, {L"", 2}, {L"", 3}, {L"", 4}, {L"", 5}}},
  };
  for (const auto& row : cases) EXPECT_EQ(SplitChoices(row.text, row.mask), row.list) << row.mask;
}

TEST(ChoiceListTest, LastMatchIsFound) {
  const ChoiceList list = {{L"x", 1}, {L"y", 3}, {L"z", 1}};
  EXPECT_EQ(FindChoice(list, 1, false), 2U);
  EXPECT_EQ(FindChoice(list, 2, false), std::nullopt);
  EXPECT_EQ(FindChoice(list, 3, true), 1U);
}

TEST(PortsDefaultTest, OrderAndLettersAreThoseOfThePage) {
  const struct {
    std::uint32_t baud, data, parity, stop, flow;
    const wchar_t* text;  // null: there is none
  } cases[] = {
      {9600, 3, 0, 0, 0, L"9600,8,n,1"},
      {9600, 3, 0, 0, 4, L"9600,8,n,1,x"},
      {115200, 0, 2, 1, 1, L"115200,5,e,1.5,p"},
      {9600, 1, 1, 0, 2, L"9600,6,o,1,p"},
      {9600, 3, 0, 0, 3, nullptr},
      {9600, 4, 0, 0, 0, nullptr},
      {9600, 3, 5, 0, 0, nullptr},
      {9600, 3, 0, 3, 0, nullptr},
  };
  for (const auto& c : cases) {
    const auto text = PortsDefaultSettings(c.baud, c.data, c.parity, c.stop, c.flow);
    EXPECT_EQ(text, c.text ? std::optional(CWideString(c.text)) : std::nullopt) << &c - cases;
  }
}

TEST(ComNameListTest, MarksWhatOthersHold) {
  ComUsage usage{};
  usage[0] = usage[2] = usage[254] = usage[255] = 1;
  const auto list = ComNameList(usage, L"COM3");
  ASSERT_EQ(list.size(), 255U);
  EXPECT_EQ(list[0], L"COM1 (in use)");
  EXPECT_EQ(list[1], L"COM2");
  EXPECT_EQ(list[2], L"COM3");
  EXPECT_EQ(list[254], L"COM255 (in use)");
  EXPECT_EQ(ComNameList(usage, L"com3")[2], L"COM3 (in use)");
}

}  // namespace
