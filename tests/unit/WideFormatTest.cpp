#include "base/WideFormat.h"

#include <gtest/gtest.h>

#include <string>

namespace larkspan {
namespace {

TEST(WideFormatTest, TextIsWide) {
  EXPECT_EQ(FormatWide(L"[%s]", L"caf\u00E9 \u65E5"), L"[caf\u00E9 \u65E5]");
}

TEST(WideFormatTest, CapitalTextIsNarrow) { EXPECT_EQ(FormatWide(L"[%S]", "abc"), L"[abc]"); }

TEST(WideFormatTest, NumbersAreFormatted) {
  EXPECT_EQ(FormatWide(L"%08X %d %u %8d %0.2f %lld", 0x2Au, -1, 4294967295u, 7, 1.5, -2LL),
            L"0000002A -1 4294967295        7 1.50 -2");
}

TEST(WideFormatTest, DoubledPercentIsOne) {
  EXPECT_EQ(FormatWide(L"%08X (%%s)", 0x2Au), L"0000002A (%s)");
}

TEST(WideFormatTest, EmptyTextIsEmpty) { EXPECT_EQ(FormatWide(L"%s", L""), L""); }

TEST(WideFormatTest, TextOfAnyLengthIsWhole) {
  const std::wstring text(100000, L'a');
  EXPECT_EQ(FormatWide(L"%s-%d", text.c_str(), 5), text + L"-5");
}

TEST(NarrowFormatTest, CapitalTextIsWide) { EXPECT_EQ(FormatNarrow("[%S]", L"abc"), "[abc]"); }

TEST(NarrowFormatTest, PrecisionCutsWideText) {
  EXPECT_EQ(FormatNarrow("'%.3S'", L"abcdef"), "'abc'");
}

TEST(NarrowFormatTest, PrecisionLeavesShorterText) {
  EXPECT_EQ(FormatNarrow("'%.20S'", L"abc"), "'abc'");
}

TEST(NarrowFormatTest, NumbersAreFormatted) {
  EXPECT_EQ(FormatNarrow("(%X-%d)\n", 0xFFFFFFFFu, 2), "(FFFFFFFF-2)\n");
}

TEST(NarrowFormatTest, TextWithoutNarrowFormIsEmpty) {
  EXPECT_EQ(FormatNarrow("'%S'", L"\u65E5"), "");
}

TEST(MessageTextTest, ShortMessageIsWhole) {
  EXPECT_EQ(FormatMessageText(L"%s: %d\n", L"a", 1), L"a: 1\n");
}

TEST(MessageTextTest, MessageOf1023CharactersIsWhole) {
  const std::wstring text(1023, L'a');
  EXPECT_EQ(FormatMessageText(L"%s", text.c_str()), text);
}

TEST(MessageTextTest, LongerMessageIsCutTo1023Characters) {
  EXPECT_EQ(FormatMessageText(L"%s", std::wstring(1024, L'a').c_str()), std::wstring(1023, L'a'));
}

TEST(MessageTextTest, CutMessageKeepsItsLineEnd) {
  EXPECT_EQ(FormatMessageText(L"%s\n", std::wstring(1023, L'a').c_str()),
            std::wstring(1022, L'a') + L"\n");
}

TEST(CutKeepingLineEndTest, TextWithinTheLimitIsLeft) {
  EXPECT_EQ(CutKeepingLineEnd(L"abc", 3), L"abc");
}

TEST(CutKeepingLineEndTest, EmptyTextIsLeft) { EXPECT_EQ(CutKeepingLineEnd(L"", 1), L""); }

TEST(CutKeepingLineEndTest, TextIsCutAtTheLimit) { EXPECT_EQ(CutKeepingLineEnd(L"abc", 2), L"ab"); }

TEST(CutKeepingLineEndTest, LineEndIsKeptWithinTheLimit) {
  EXPECT_EQ(CutKeepingLineEnd(L"abc\n", 3), L"ab\n");
}

TEST(CutKeepingLineEndTest, LineEndAloneIsKept) { EXPECT_EQ(CutKeepingLineEnd(L"ab\n", 1), L"\n"); }

TEST(CutKeepingLineEndTest, LineEndInsideIsNoEnd) {
  EXPECT_EQ(CutKeepingLineEnd(L"a\nbc", 3), L"a\nb");
}

TEST(CutKeepingLineEndTest, SurrogatePairIsNotSplit) {
  EXPECT_EQ(CutKeepingLineEnd(L"a\U0001F600b", 2), L"a");
}

TEST(CutKeepingLineEndTest, SurrogatePairBeforeTheLineEndIsNotSplit) {
  EXPECT_EQ(CutKeepingLineEnd(L"a\U0001F600b\n", 3), L"a\n");
}

TEST(CutKeepingLineEndTest, SurrogatePairThatFitsIsKept) {
  EXPECT_EQ(CutKeepingLineEnd(L"a\U0001F600b", 3), L"a\U0001F600");
}

}  // namespace
}  // namespace larkspan
