// Translation between the Notes character set, UTF-16 and UTF-8.
#include <string>

#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

using namespace std::string_literals;

struct Pair {
  std::u16string utf16;
  std::string notes;
};

const Pair kPairs[] = {
    {u"Larkspur ~\x7F", "Larkspur ~\x7F"},
    {u"\t\n\r", "\t\n\r"},
    {u"\u0000"s, "\0"s},
    {u"\u0001", "\x0F\x21"},
    {u"\u0008", "\x0F\x28"},
    {u"\u000B", "\x0F\x2B"},
    {u"\u000C", "\x0F\x2C"},
    {u"\u001F", "\x0F\x3F"},
    {u"\u0080", "\x01\x80"},
    {u"\u00E4", "\x01\xE4"},
    {u"\u00FF", "\x01\xFF"},
    {u"\u0100", "\x14\xF6\x01"},
    {u"\u0101", "\x14\x01\x01"},
    {u"\u2200", "\x14\xF6\x22"},
    {u"\u30C4", "\x14\x30\xC4"},
    {u"\uFFFD", "\x14\xFF\xFD"},
    {u"\U0001F33C", "\x14\xD8\x3C\x14\xDF\x3C"},
    {u"a\u00E4b", "a\x01\xE4"s + "b"},
};

std::string Utf16Bytes(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

std::string Translate(WORD mode, const std::string& in, WORD size = 1000) {
  std::string out(size + 8U, '*');
  const WORD written = OSTranslate(mode, in.data(), static_cast<WORD>(in.size()), out.data(), size);
  EXPECT_EQ(out.substr(written), std::string(out.size() - written, '*')) << "bytes past the text";
  return out.substr(0, written);
}

class Translation : public StandinTest {};

}  // namespace

TEST_F(Translation, WritesEveryRangeAsTheNotesCharacterSetDoes) {
  for (const Pair& pair : kPairs) {
    EXPECT_EQ(Translate(kTranslateUtf16ToNotes, Utf16Bytes(pair.utf16)), pair.notes);
  }
}

TEST_F(Translation, ReadsEveryRangeBack) {
  for (const Pair& pair : kPairs) {
    EXPECT_EQ(Translate(kTranslateNotesToUtf16, pair.notes), Utf16Bytes(pair.utf16));
  }
}

TEST_F(Translation, EveryUnitSurvivesButThoseThatShareTheirBytes) {
  for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
    const std::string bytes = Utf16Bytes(std::u16string(1, static_cast<char16_t>(unit)));
    const std::string notes = Translate(kTranslateUtf16ToNotes, bytes, 3);
    const bool shares = unit > 0xF600 && unit <= 0xF6FF;
    const auto expected = static_cast<char16_t>(shares ? (unit & 0xFF) << 8 : unit);
    ASSERT_EQ(Translate(kTranslateNotesToUtf16, notes, 2), Utf16Bytes(std::u16string(1, expected)))
        << unit;
    ASSERT_TRUE(unit == 0 || notes.find('\0') == std::string::npos) << unit;
  }
}

TEST_F(Translation, GivesUtf8) {
  EXPECT_EQ(Translate(kTranslateNotesToUtf8, ToNotes(std::u16string_view(u"aä€\U0001F33C"))),
            "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\xBC");
}

TEST_F(Translation, TurnsUnpairedSurrogatesIntoReplacementsInUtf8Only) {
  const std::string high = "\x14\xD8\x3C";
  const std::string low = "\x14\xDF\x3C";
  EXPECT_EQ(Translate(kTranslateNotesToUtf8, high + "x"), "\xEF\xBF\xBDx");
  EXPECT_EQ(Translate(kTranslateNotesToUtf8, low + high), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(Translate(kTranslateNotesToUtf16, high), Utf16Bytes(std::u16string{0xD83C}));
}

TEST_F(Translation, ReplacesWhatIsNoText) {
  for (const std::string& broken :
       {"\x02"s, "\xE4"s, "\x0F"s, "\x0F\x20"s, "\x0F\x2A"s, "\x0F\x60"s, "\x01"s, "\x01\x7F"s,
        "\x14"s, "\x14\x30"s, "\x14\0\x41"s}) {
    EXPECT_TRUE(Translate(kTranslateNotesToUtf8, broken).starts_with("\xEF\xBF\xBD"));
  }
  EXPECT_EQ(Translate(kTranslateNotesToUtf8, "\x01z"), "\xEF\xBF\xBDz");
}

TEST_F(Translation, NeverSplitsACharacterAtTheLimit) {
  const std::string flower = Utf16Bytes(u"\U0001F33C");
  const std::string notes = Translate(kTranslateUtf16ToNotes, flower);
  for (WORD size = 0; size < 6; ++size) {
    EXPECT_EQ(Translate(kTranslateUtf16ToNotes, flower, size), "");
  }
  for (WORD size = 0; size < 4; ++size) {
    EXPECT_EQ(Translate(kTranslateNotesToUtf16, notes, size), "");
    EXPECT_EQ(Translate(kTranslateNotesToUtf8, notes, size), "");
  }
  EXPECT_EQ(Translate(kTranslateNotesToUtf8, notes, 4).size(), 4U);
  EXPECT_EQ(Translate(kTranslateUtf16ToNotes, Utf16Bytes(u"aäb"), 2), "a");
}

TEST_F(Translation, WorksBeforeTheRuntimeStarts) {
  EXPECT_EQ(Translate(kTranslateNotesToUtf8, "early"), "early");
}

}  // namespace larkspan::standin_test
