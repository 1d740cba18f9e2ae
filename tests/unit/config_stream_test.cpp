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
    {0x03, "01020304 03000000 54435000"},
    {0x0D, "02 01020304 04 5400430050000000"},
    {0x1A, "00 D4C3B2A1 02 01020304 03 03000000 544350"},
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

TEST(ConfigStreamWriteTest, TextThatDoesNotFitOrCannotBeConvertedIsNotWritten) {
  SmallSet set;
  EXPECT_EQ(Write(set, 11, 3).bytes, Hex("01020304"));
  set.text = L"caf\u00E9";
  EXPECT_EQ(Write(set, 100, 3).bytes, Hex("01020304"));
  EXPECT_EQ(set.text.ErrorState(), CWideString::kFailed);
}

struct ReadCase {
  const char* what;
  std::uint32_t flags;
  const char* stream;
  bool succeeds;
  std::uint32_t number;  // 7 where the stream does not reach it
  const wchar_t* text;   // "old" where the stream does not reach it
  std::size_t unreadBytes;
  std::int32_t errorState = CWideString::kGood;
};
constexpr ReadCase kReadCases[] = {
    {"driver stream", 3, "01000000 03000000 54435000", true, 1, L"TCP", 0},
    {"surplus", 3, "01000000 03000000 54435000 FFFF", true, 1, L"TCP", 2},
    {"prefix beyond the end", 3, "01000000 05000000 54435000", false, 1, L"old", 4},
    {"no terminator", 3, "01000000 03000000 544350", false, 1, L"old", 3},
    {"prefix too small", 3, "01000000 02000000 54435000", false, 1, L"TCP", 4},
    {"zero inside counted text", 3, "01000000 03000000 54005000", false, 1, L"T", 4},
    {"wide terminated", 5, "01000000 5400E9000000 FF", true, 1, L"T\u00E9", 1},
    {"wide, prefix in bytes", 7, "01000000 06000000 5400430050000000", true, 1, L"TCP", 0},
    {"tagged header", 0x1B, "00 D4C3B2A1 02 01000000 03 00000000 00", true, 1, L"", 0},
    {"number with another tag", 0x0B, "03 01000000 03 03000000 54435000", false, 7, L"old", 13},
    {"wide text without an end", 4, "01000000 5400", false, 7, L"old", 6},
    {"not a 7-bit character", 3, "01000000 02000000 63E900", false, 1, L"old", 3, CWideString::kFailed},
    {"an option that does not exist", 0x23, "01000000 00000000 00", false, 7, L"old", 9},
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
    EXPECT_EQ(set.text.ErrorState(), row.errorState);
    EXPECT_EQ(set.Options().Flags(), 3U);
  }
}

}  // namespace
