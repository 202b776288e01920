#include "base/Utf8.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/Utf8Check.h"

namespace larkspan {
namespace {

TEST(Utf8Test, EmptyTextIsEmpty) { EXPECT_EQ(WideToUtf8(L""), ""); }

TEST(Utf8Test, CharactersOfEveryLengthAreConverted) {
  EXPECT_EQ(WideToUtf8(L"a\u00E9\u65E5\U0001F600"), "a\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80");
}

TEST(Utf8Test, NulInsideIsConverted) {
  EXPECT_EQ(WideToUtf8(std::wstring_view(L"a\0b", 3)), std::string("a\0b", 3));
}

TEST(Utf8Test, LoneHighSurrogateBecomesTheReplacementCharacter) {
  EXPECT_EQ(WideToUtf8(L"a\xD83D"
                       L"b"),
            "a\xEF\xBF\xBD"
            "b");
}

TEST(Utf8Test, LoneLowSurrogateBecomesTheReplacementCharacter) {
  EXPECT_EQ(WideToUtf8(L"a\xDE00"
                       L"b"),
            "a\xEF\xBF\xBD"
            "b");
}

TEST(Utf8Test, TextOfAnyLengthIsWhole) {
  EXPECT_EQ(WideToUtf8(std::wstring(50000, L'\u65E5')).size(), 150000u);
}

TEST(Utf8LineTest, ShortLineIsWhole) { EXPECT_EQ(WideLineToUtf8(L"\u00E9\n"), "\xC3\xA9\n"); }

TEST(Utf8LineTest, LineOf1023BytesIsWhole) {
  EXPECT_EQ(WideLineToUtf8(std::wstring(1022, L'a') + L"\n"), std::string(1022, 'a') + "\n");
}

TEST(Utf8LineTest, LongerLineIsCutTo1023BytesWithItsEnd) {
  EXPECT_EQ(WideLineToUtf8(std::wstring(1023, L'a') + L"\n"), std::string(1022, 'a') + "\n");
}

TEST(Utf8LineTest, TextWithoutLineEndIsCutTo1023Bytes) {
  EXPECT_EQ(WideLineToUtf8(std::wstring(1024, L'a')), std::string(1023, 'a'));
}

// Every place of the cut within a character comes up, for characters of two, three and four bytes.
TEST(Utf8LineTest, CutNeverSplitsACharacter) {
  for (const std::wstring character : {L"\u00E9", L"\u65E5", L"\U0001F600"}) {
    for (std::size_t shift = 0; shift < 4; ++shift) {
      std::wstring line(shift, L'a');
      for (int i = 0; i < 600; ++i) line += character;
      EXPECT_TRUE(IsWholeUtf8(WideLineToUtf8(line))) << character << L" " << shift;
    }
  }
}

TEST(Utf8LineTest, CutLosesNoMoreThanOneCharacter) {
  for (std::size_t shift = 0; shift < 4; ++shift) {
    std::wstring line(shift, L'a');
    for (int i = 0; i < 300; ++i) line += L"\U0001F600";
    EXPECT_GT(WideLineToUtf8(line).size(), 1019u) << shift;
    EXPECT_LE(WideLineToUtf8(line).size(), 1023u) << shift;
  }
}

}  // namespace
}  // namespace larkspan
