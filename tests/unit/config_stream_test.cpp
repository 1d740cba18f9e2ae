// The stream of an information set, byte for byte.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "config/information_set.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kTag = 0xA1B2C3D4;

// "01 0A" as bytes; blanks are for the reader.
Bytes Hex(std::string_view text) {
  Bytes bytes;
  int high = -1;
  for (const char c : text) {
    if (c == ' ') continue;
    const int digit = c <= '9' ? c - '0' : c - 'A' + 10;
    if (high >= 0) bytes.push_back(static_cast<std::uint8_t>(high << 4 | digit));
    high = high >= 0 ? -1 : digit;
  }
  return bytes;
}

// A set of one number and one text.
class SmallSet : public CSsInformationSet {
 public:
  SmallSet() : CSsInformationSet(kDriverFlags, kTag) {
    auto zero = std::make_unique<CSsDefaultValue>(0U);
    EXPECT_TRUE(AddItem(0, L"Number", &number, CSsInformationItem::kDword, 0, zero));
    EXPECT_TRUE(AddStringItem(L"Text", &text, "TCP", 0));
  }
  std::uint32_t number = 0x04030201;
  CWideString text = L"TCP";
};

// A set of one text.
class TextSet : public CSsInformationSet {
 public:
  explicit TextSet(std::wstring_view value) : text(value) {
    EXPECT_TRUE(AddStringItem(L"Text", &text, nullptr, 0));
  }
  CWideString text;
};

// Writes into a buffer that ends exactly where the stream should.
struct Written {
  bool succeeded;
  Bytes bytes;
};
Written Write(CSsInformationSet& set, std::size_t room, std::uint32_t flags) {
  Bytes buffer(room);
  auto remaining = static_cast<std::uint32_t>(room);
  const bool succeeded = set.Serialise(buffer.data(), remaining, flags);
  buffer.resize(room - remaining);
  return {succeeded, buffer};
}

struct WriteCase {
  std::uint32_t flags;
  const char* stream;
};
constexpr WriteCase kWriteCases[] = {
    {0x01, "01020304 54435000"},
    {0x02, "01020304 03000000 544350"},
    {0x03, "01020304 03000000 54435000"},
    {0x07, "01020304 03000000 5400430050000000"},
    {0x0D, "02 01020304 04 5400430050000000"},
    {0x1A, "00 D4C3B2A1 02 01020304 03 03000000 544350"},
    {0x1F, "00 D4C3B2A1 02 01020304 04 03000000 5400430050000000"},
};

TEST(ConfigStreamWriteTest, EveryOptionShapesTheStream) {
  for (const WriteCase& row : kWriteCases) {
    SCOPED_TRACE(testing::Message() << "flags " << row.flags);
    const Bytes expected = Hex(row.stream);
    SmallSet set;
    EXPECT_EQ(set.GetSerialisedSize(row.flags), expected.size());
    const Written written = Write(set, expected.size(), row.flags);
    EXPECT_TRUE(written.succeeded);
    EXPECT_EQ(written.bytes, expected);
    EXPECT_FALSE(Write(set, expected.size() - 1, row.flags).succeeded);
    EXPECT_EQ(set.Options().Flags(), 3U);
  }
}

TEST(ConfigStreamWriteTest, ElementThatDoesNotFitLeavesItsRoomUntouched) {
  SmallSet set;
  EXPECT_EQ(Write(set, 3, 3).bytes, Bytes());
  EXPECT_EQ(Write(set, 11, 3).bytes, Hex("01020304"));
  std::uint32_t room = 100;
  EXPECT_FALSE(set.Serialise(nullptr, room));
  EXPECT_EQ(room, 100U);
}

TEST(ConfigStreamWriteTest, LengthsCountInSixteenBits) {
  struct Case {
    std::size_t length;
    std::uint32_t flags;
    std::uint32_t textBytes;
    const char* prefix;
  };
  constexpr Case kCases[] = {
      {0, 3, 0, "00000000"},         {65535, 3, 65535, "FFFF0000"}, {65536, 3, 0, "00000000"},
      {65540, 3, 4, "04000000"},     {32767, 7, 65534, "FF7F0000"}, {32768, 7, 0, "00800000"},
      {40000, 7, 14464, "409C0000"},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(testing::Message() << row.length << " characters, flags " << row.flags);
    TextSet set(std::wstring(row.length, L'A'));
    const std::uint32_t size = 4 + row.textBytes + (row.flags == 7 ? 2 : 1);
    EXPECT_EQ(set.GetSerialisedSize(row.flags), size);
    const Written written = Write(set, size, row.flags);
    ASSERT_TRUE(written.succeeded);
    ASSERT_EQ(written.bytes.size(), size);
    EXPECT_EQ(Bytes(written.bytes.begin(), written.bytes.begin() + 4), Hex(row.prefix));
    EXPECT_EQ(written.bytes.back(), 0);
  }
}

TEST(ConfigStreamWriteTest, OnlyWrittenCharactersAreConverted) {
  std::wstring longText(65540, L'A');
  longText[5] = L'\u00E9';
  TextSet unconverted(longText);
  EXPECT_EQ(Write(unconverted, 9, 3).bytes, Hex("04000000 4141414100"));
  EXPECT_EQ(unconverted.text.ErrorState(), CWideString::kGood);

  SmallSet failing;
  failing.text = L"caf\u00E9";
  const Written written = Write(failing, 100, 3);
  EXPECT_FALSE(written.succeeded);
  EXPECT_EQ(written.bytes, Hex("01020304"));
  EXPECT_EQ(failing.text.ErrorState(), CWideString::kFailed);
  EXPECT_EQ(Write(failing, 100, 5).bytes, Hex("01020304 63006100 6600E900 0000"));
}

struct ReadCase {
  const char* what;
  std::uint32_t flags;
  const char* stream;
  bool succeeds;
  std::uint32_t number;  // 7 where the stream does not reach it
  const wchar_t* text;   // "old" where the stream does not reach it
  std::size_t unreadBytes;
};
constexpr ReadCase kReadCases[] = {
    {"driver stream", 3, "01000000 03000000 54435000", true, 1, L"TCP", 0},
    {"surplus", 3, "01000000 03000000 54435000 FFFF", true, 1, L"TCP", 2},
    {"empty text", 3, "01000000 00000000 00", true, 1, L"", 0},
    {"nothing", 3, "", false, 7, L"old", 0},
    {"short number", 3, "010000", false, 7, L"old", 3},
    {"short prefix", 3, "01000000 030000", false, 1, L"old", 3},
    {"prefix beyond the end", 3, "01000000 05000000 54435000", false, 1, L"old", 4},
    {"largest prefix", 3, "01000000 FFFFFFFF 54435000", false, 1, L"old", 4},
    {"no terminator", 3, "01000000 03000000 544350", false, 1, L"old", 3},
    {"prefix too small", 3, "01000000 02000000 54435000", false, 1, L"TCP", 4},
    {"prefix counts the terminator", 3, "01000000 04000000 54435000", false, 1, L"TCP", 4},
    {"zero inside counted text", 3, "01000000 03000000 54005000", false, 1, L"T", 4},
    {"terminated", 1, "01000000 54435000 00", true, 1, L"TCP", 1},
    {"terminated, no end", 1, "01000000 544350", false, 1, L"old", 3},
    {"counted", 2, "01000000 03000000 544350 FF", true, 1, L"TCP", 1},
    {"counted, cut at a zero", 2, "01000000 03000000 540050", true, 1, L"T", 0},
    {"wide terminated", 5, "01000000 5400E9000000 FF", true, 1, L"T\u00E9", 1},
    {"wide, half an end", 5, "01000000 5400E90000", false, 1, L"old", 5},
    {"wide, prefix in bytes", 7, "01000000 06000000 5400430050000000", true, 1, L"TCP", 0},
    {"wide, prefix in units as written", 7, "01000000 03000000 5400430050000000", false, 1, L"TCP", 8},
    {"wide counted takes half of what it copies", 6, "01000000 03000000 540043005000", true, 1, L"TCP", 3},
    {"wide counted, only its bytes there", 6, "01000000 04000000 54004300", false, 1, L"old", 4},
    {"tags", 0x0B, "02 01000000 03 03000000 54435000", true, 1, L"TCP", 0},
    {"number with another tag", 0x0B, "03 01000000 03 03000000 54435000", false, 7, L"old", 13},
    {"narrow text tagged wide", 0x0B, "02 01000000 04 03000000 54435000", false, 1, L"old", 8},
    {"tagged header", 0x1B, "00 D4C3B2A1 02 01000000 03 00000000 00", true, 1, L"", 0},
    {"header with another tag", 0x1B, "02 D4C3B2A1 02 01000000 03 00000000 00", false, 7, L"old", 15},
};

TEST(ConfigStreamReadTest, ReadsWhatIsThereAndNothingElse) {
  for (const ReadCase& row : kReadCases) {
    SCOPED_TRACE(row.what);
    // Memory of exactly the stream's size: the sanitizer sees a read past it.
    const Bytes stream = Hex(row.stream);
    auto remaining = static_cast<std::uint32_t>(stream.size());
    SmallSet set;
    set.number = 7;
    set.text = L"old";
    EXPECT_EQ(set.Deserialise(stream.data(), remaining, row.flags), row.succeeds);
    EXPECT_EQ(set.number, row.number);
    EXPECT_EQ(set.text.View(), row.text);
    EXPECT_EQ(remaining, row.unreadBytes);
    EXPECT_EQ(set.text.ErrorState(), CWideString::kGood);
    EXPECT_EQ(set.Options().Flags(), 3U);
  }
}

TEST(ConfigStreamReadTest, TextThatCannotBeConvertedSetsTheErrorState) {
  SmallSet set;
  const Bytes stream = Hex("01000000 02000000 63E900");
  auto remaining = static_cast<std::uint32_t>(stream.size());
  EXPECT_FALSE(set.Deserialise(stream.data(), remaining));
  EXPECT_EQ(set.text.ErrorState(), CWideString::kFailed);
  EXPECT_EQ(set.text, L"TCP");
}

TEST(ConfigStreamReadTest, TextOfWrappedLengthIsConsumedWhole) {
  TextSet set(L"");
  Bytes stream = Hex("04000000");
  stream.insert(stream.end(), 65540, 'A');
  stream.push_back(0);
  auto remaining = static_cast<std::uint32_t>(stream.size());
  EXPECT_TRUE(set.Deserialise(stream.data(), remaining));
  EXPECT_EQ(set.text.Length(), 65540U);
  EXPECT_EQ(remaining, 0U);
}

TEST(ConfigStreamReadTest, OptionsThatNoStreamCanHaveFailAtOnce) {
  for (const std::uint32_t flags : {0x04U, 0x08U, 0x10U, 0x1CU, 0x20U, 0x23U, 0xFFFFFFFFU}) {
    SCOPED_TRACE(flags);
    SmallSet set;
    const Bytes stream = Hex("01000000 00000000 00");
    auto remaining = static_cast<std::uint32_t>(stream.size());
    EXPECT_EQ(set.GetSerialisedSize(flags), 0U);
    EXPECT_TRUE(Write(set, 100, flags).bytes.empty());
    EXPECT_FALSE(set.Deserialise(stream.data(), remaining, flags));
    EXPECT_EQ(remaining, stream.size());
    EXPECT_EQ(set.number, 0x04030201U);
    EXPECT_EQ(set.Options().Flags(), 3U);
  }
}

TEST(ConfigSetTest, EmptySetTakesAndGivesNothing) {
  CSsInformationSet set;
  EXPECT_EQ(set.GetSerialisedSize(), 0U);
  std::uint32_t remaining = 0;
  EXPECT_TRUE(set.Serialise(nullptr, remaining));
  const Bytes rubbish = Hex("DEADBEEF");
  remaining = 4;
  EXPECT_TRUE(set.Deserialise(rubbish.data(), remaining));
  EXPECT_EQ(remaining, 4U);
}

}  // namespace
