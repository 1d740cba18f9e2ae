#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

#include "status/choice_list.h"
#include "status/com_name_list.h"
#include "status/ports_default.h"
#include "status/serial_words.h"

namespace {

using IndexToText = CWideString (*)(std::uint32_t);
using CodeToText = CWideString (*)(std::wstring_view);
using CodeToIndex = std::uint32_t (*)(std::uint32_t);

TEST(SerialWordsTest, IndexesBecomeWords) {
  const struct {
    IndexToText convert;
    std::uint32_t index;
    const wchar_t* word;
  } cases[] = {
      {DataBitsIndexToText, 0, L"5"},
      {DataBitsIndexToText, 3, L"8"},
      {DataBitsIndexToText, 4, L""},
      {DataBitsIndexToText, 0xFFFFFFFF, L""},
      {ParityIndexToText, 1, L"Odd"},
      {ParityIndexToText, 4, L"Space"},
      {ParityIndexToText, 5, L"None"},
      {StopBitsIndexToText, 1, L"1.5"},
      {StopBitsIndexToText, 2, L"2"},
      {StopBitsIndexToText, 3, L"None"},
      {FlowControlIndexToText, 2, L"DTR/DSR"},
      {FlowControlIndexToText, 3, L"None"},
      {FlowControlIndexToText, 4, L"None"},
      {DuplexIndexToText, 1, L"RS422 full-duplex mode"},
      {DuplexIndexToText, 2, L"RS485 half-duplex autogating mode"},
      {DuplexIndexToText, 3, L"None"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.convert(c.index), c.word) << c.index;
}

TEST(SerialWordsTest, CodesOfTheDeviceBecomeWords) {
  const struct {
    CodeToText convert;
    const wchar_t* code;
    const wchar_t* word;
  } cases[] = {
      {ParityCodeToText, L"1", L"None"},
      {ParityCodeToText, L"3", L"Even"},
      {ParityCodeToText, L"5", L"Space"},
      {ParityCodeToText, L"6", L"None"},
      {ParityCodeToText, L"abc", L"None"},
      {ParityCodeToText, L"-1", L"None"},
      {StopBitsCodeToText, L"2", L"2"},
      {StopBitsCodeToText, L"3", L"1.5"},
      {StopBitsCodeToText, L"0", L"None"},
      {FlowControlCodeToText, L" 4x", L"Xon/Xoff"},
      {FlowControlCodeToText, L"2", L"CTS/RTS"},
      {FlowControlCodeToText, L"", L"None"},
      {DuplexCodeToText, L"1", L"RS422 full-duplex mode"},
      {DuplexCodeToText, L"9999999999", L"None"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.convert(c.code), c.word) << c.code;
}

TEST(SerialWordsTest, CodesBecomeIndexes) {
  const struct {
    CodeToIndex convert;
    std::uint32_t indexes[7];  // of codes 0 to 6
  } cases[] = {
      {ParityCodeToIndex, {0, 0, 1, 2, 3, 4, 0}},
      {StopBitsCodeToIndex, {0, 0, 2, 1, 0, 0, 0}},
      {FlowControlCodeToIndex, {0, 0, 1, 2, 4, 0, 0}},
      {DuplexCodeToIndex, {0, 1, 2, 0, 0, 0, 0}},
  };
  for (std::size_t row = 0; row < std::size(cases); ++row) {
    for (std::uint32_t code = 0; code < 7; ++code) {
      EXPECT_EQ(cases[row].convert(code), cases[row].indexes[code]) << row << " " << code;
    }
    EXPECT_EQ(cases[row].convert(0xFFFFFFFF), 0U) << row;
  }
}

constexpr wchar_t kFive[] = L"a,b b, c,d,e,f";

TEST(ChoiceListTest, MaskOffersAndPlacesStay) {
  EXPECT_EQ(SplitChoices(kFive, 0), ChoiceList());
  EXPECT_EQ(SplitChoices(kFive, 6), (ChoiceList{{L"b b", 2}, {L" c", 3}}));
  EXPECT_EQ(SplitChoices(kFive, 16), (ChoiceList{{L"e,f", 5}}));
  EXPECT_EQ(SplitChoices(kFive, 0xFFFFFFE1), (ChoiceList{{L"a", 1}}));
}

TEST(ChoiceListTest, EachMissingCommaCostsACharacter) {
  EXPECT_EQ(SplitChoices(L"A,B", 31), (ChoiceList{{L"A", 1}, {L"", 2}, {L"", 3}, {L"", 4}, {L"", 5}}));
  EXPECT_EQ(SplitChoices(L"A,12345", 16), (ChoiceList{{L"45", 5}}));
  EXPECT_EQ(SplitChoices(L"", 17), (ChoiceList{{L"", 1}, {L"", 5}}));
}

TEST(ChoiceListTest, LastMatchIsFound) {
  const ChoiceList list = {{L"x", 1}, {L"y", 3}, {L"z", 1}};
  EXPECT_EQ(FindChoice(list, 1, false), 2U);
  EXPECT_EQ(FindChoice(list, 2, false), std::nullopt);
  EXPECT_EQ(FindChoice(list, 2, true), 1U);
  EXPECT_EQ(FindChoice(list, 0, true), 2U);
  EXPECT_EQ(FindChoice({}, 0, true), std::nullopt);
}

TEST(PortsDefaultTest, OrderAndLettersAreThoseOfThePage) {
  const struct {
    std::uint32_t baud, data, parity, stop, flow;
    const wchar_t* text;
  } cases[] = {
      {9600, 3, 0, 0, 0, L"9600,8,n,1"},
      {9600, 3, 0, 0, 4, L"9600,8,n,1,x"},
      {115200, 0, 4, 1, 1, L"115200,5,s,1.5,p"},
      {300, 2, 2, 2, 2, L"300,7,e,2,p"},
      {9600, 3, 0, 0, 3, nullptr},
      {9600, 3, 0, 0, 5, nullptr},
      {9600, 4, 0, 0, 0, nullptr},
      {9600, 3, 5, 0, 0, nullptr},
      {9600, 3, 0, 3, 0, nullptr},
      {9600, 0xFFFFFFFF, 0, 0, 0, nullptr},
  };
  for (const auto& c : cases) {
    const auto text = PortsDefaultSettings(c.baud, c.data, c.parity, c.stop, c.flow);
    ASSERT_EQ(text.has_value(), c.text != nullptr) << c.baud << " " << c.flow;
    if (text) {
      EXPECT_EQ(*text, c.text);
    }
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
