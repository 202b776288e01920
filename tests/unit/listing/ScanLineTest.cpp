#include "listing/ScanLine.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/ByteBuilder.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::TIMEDATE;
using notes_api::WORD;

ExactBytes NumberValue(double number) {
  return ByteBuilder().Word(notes_api::kTypeNumber).Add(number).Build();
}

ExactBytes TimeValue(notes_api::DWORD hundredths, notes_api::DWORD day) {
  return ByteBuilder().Word(notes_api::kTypeTime).Add(TIMEDATE{{hundredths, day}}).Build();
}

constexpr notes_api::DWORD kFirstDay = 1721424;
constexpr notes_api::DWORD kNoDate = 0xFFFFFF;
constexpr notes_api::DWORD kNoTime = 0xFFFFFFFF;

class ScanLineTest : public NotesFixture {
 protected:
  ScanLineTest() { Start(); }

  static std::string ValueText(const ExactBytes& value) {
    const ExactBytes summary = SummaryBytes({{"Item", value}});
    std::string text;
    AppendSummaryValue(*reinterpret_cast<const notes_api::ItemTable*>(summary.data()), "Item",
                       text);
    return text;
  }

  // The line of an entry with these items, without its line end.
  std::string Line(const std::vector<SummaryItem>& items, const TIMEDATE& identifier = {}) {
    const ExactBytes summary = SummaryBytes(items);
    notes_api::SearchMatch match{};
    match.noteTime = identifier;
    ListingFile file;
    EXPECT_TRUE(file.Open(L"\\lines.txt"));
    ScanLines(file).Write(match, *reinterpret_cast<const notes_api::ItemTable*>(summary.data()));
    EXPECT_TRUE(file.Close());
    const Lines lines = ReadLines(PathOf(L"lines.txt"));
    EXPECT_EQ(lines.size(), 1U);
    return lines.at(0);
  }

  // One of the line's six fields, counted from 1.
  std::string Field(int number, const std::vector<SummaryItem>& items) {
    std::string rest = Line(items);
    for (int i = 1; i < number; ++i) rest.erase(0, rest.find('\t') + 1);
    return rest.substr(0, rest.find('\t'));
  }

  std::string Title(const ExactBytes& info) { return Field(2, {{"$Info", info}}); }
};

TEST_F(ScanLineTest, TextIsTranslated) {
  EXPECT_EQ(ValueText(TextValue("a\x01\xE4")), "a\xC3\xA4");
  EXPECT_EQ(ValueText(TextValue("")), "");
}

TEST_F(ScanLineTest, TimeIsHundredthsSinceTheFirstDay) {
  EXPECT_EQ(ValueText(TimeValue(0, kFirstDay)), "0");
  EXPECT_EQ(ValueText(TimeValue(1, kFirstDay)), "1");
  EXPECT_EQ(ValueText(TimeValue(0, kFirstDay + 1)), "8640000");
  EXPECT_EQ(ValueText(TimeValue(0, kFirstDay - 1)), "-8640000");
  // 31 January 2024, 14:30:05.27.
  EXPECT_EQ(ValueText(TimeValue(5220527, 2460341)), "6384248100527");
}

// A part that is not there counts as the number that the library gives for it.
TEST_F(ScanLineTest, TimeWithoutAPartCountsTheLargestNumber) {
  EXPECT_EQ(ValueText(TimeValue(kNoTime, kFirstDay)), "4294967295");
  EXPECT_EQ(ValueText(TimeValue(0, kNoDate)), "37093644325440000");
}

TEST_F(ScanLineTest, NumberIsTheIntegerOfItsBits) {
  EXPECT_EQ(ValueText(NumberValue(0)), "0");
  EXPECT_EQ(ValueText(NumberValue(1048576)), "4697254411347427328");
  EXPECT_EQ(ValueText(NumberValue(-1)), "-4616189618054758400");
  EXPECT_EQ(ValueText(NumberValue(-0.0)), "-9223372036854775808");
  EXPECT_EQ(ValueText(NumberValue(std::numeric_limits<double>::quiet_NaN())),
            "9221120237041090560");
}

TEST_F(ScanLineTest, OtherTypesAndDamagedValuesGiveNothing) {
  EXPECT_EQ(ValueText(ByteBuilder().Word(notes_api::kTypeTextList).Word(0).Build()), "");
  EXPECT_EQ(ValueText(ByteBuilder().Word(notes_api::kTypeNumber).Dword(7).Build()), "");
  EXPECT_EQ(ValueText(ByteBuilder().Word(notes_api::kTypeTime).Dword(7).Build()), "");
}

TEST_F(ScanLineTest, LineHasSixFields) {
  EXPECT_EQ(Line({{"$Path", TextValue("mail\\ada.nsf")},
                  {"$Info", TextValue("Ada's mail\nPrivate")},
                  {"$DATAMOD", TimeValue(1, kFirstDay)},
                  {"$NONDATAMOD", TimeValue(2, kFirstDay)},
                  {"$Length", NumberValue(1048576)}},
                 {{0xABC, 0xC12583D0}}),
            "mail\\ada.nsf\tAda's mail Private\t1\t2\t4697254411347427328\tC12583D000000ABC");
}

TEST_F(ScanLineTest, MissingItemsLeaveEmptyFields) {
  EXPECT_EQ(Line({}), "\t\t\t\t0\t0000000000000000");
}

TEST_F(ScanLineTest, ItemsOfOtherTypesLeaveEmptyFields) {
  EXPECT_EQ(Line({{"$Info", NumberValue(1)},
                  {"$Path", ByteBuilder().Word(0x0600).Build()},
                  {"$Length", TextValue("1048576")}}),
            "\t\t\t\t0\t0000000000000000");
}

TEST_F(ScanLineTest, PathMayBeANumber) {
  EXPECT_EQ(Field(1, {{"$Path", NumberValue(1048576)}}), "4697254411347427328");
}

// The text of the identifier does not change how the numbers of the next line are written.
TEST_F(ScanLineTest, NumbersOfTheNextLineAreDecimalAgain) {
  const std::vector<SummaryItem> items = {{"$Length", NumberValue(1048576)}};
  ListingFile file;
  ASSERT_TRUE(file.Open(L"\\lines.txt"));
  const ExactBytes summary = SummaryBytes(items);
  notes_api::SearchMatch match{};
  match.noteTime = {{0xABCDEF12, 0x1}};
  ScanLines lines(file);
  for (int i = 0; i < 2; ++i) {
    lines.Write(match, *reinterpret_cast<const notes_api::ItemTable*>(summary.data()));
  }
  ASSERT_TRUE(file.Close());
  const std::string line = "\t\t\t\t4697254411347427328\t00000001ABCDEF12";
  EXPECT_EQ(ReadLines(PathOf(L"lines.txt")), (Lines{line, line}));
}

TEST_F(ScanLineTest, SizeAddsWhatIsInAttachmentStorage) {
  const ExactBytes half = NumberValue(524288);
  EXPECT_EQ(Field(5, {{"$Length", half}, {"$DAOSSTOREDBYTES", half}}), "4697254411347427328");
  EXPECT_EQ(Field(5, {{"$DAOSSTOREDBYTES", NumberValue(1048576)}}), "4697254411347427328");
  EXPECT_EQ(Field(5, {{"$Length", NumberValue(-0.0)}}), "-9223372036854775808");
}

TEST_F(ScanLineTest, TitleKeepsTheLineWhole) {
  EXPECT_EQ(Title(TextValue("a\tb\x0F\x21"
                            "c")),
            "a b c");
  EXPECT_EQ(Title(TextValue("ends  ")), "ends");
  EXPECT_EQ(Title(TextValue("ends in a tab\t")), "ends in a tab");
  EXPECT_EQ(Title(TextValue("   ")), "");
  EXPECT_EQ(Title(TextValue("  begins")), "  begins");
  EXPECT_EQ(Title(TextValue("\x01\xFC"
                            "ber")),
            "\xC3\xBC"
            "ber");
  EXPECT_EQ(Title(TextValue("\x7F")), "\x7F");
}

TEST_F(ScanLineTest, SpacesAreCutFromTheTitleAlone) {
  EXPECT_EQ(Line({{"$Path", TextValue("a\tb  ")}, {"$Info", TextValue("   ")}}),
            "a\tb  \t\t\t\t0\t0000000000000000");
}

WORD LARKSPAN_NOTES_CALL CopyText(WORD, const char* in, WORD length, char* out, WORD) {
  std::memcpy(out, in, length);
  return length;
}

// The last of the control characters begins a longer unit in the character set as it is known here.
TEST_F(ScanLineTest, TitleKeepsTheLineWholeWhateverTheTranslationGives) {
  const ReplacedEntryPoint replaced("OSTranslate", CopyText);
  EXPECT_EQ(Title(TextValue("a\x1F"
                            "b")),
            "a b");
}

TEST_F(ScanLineTest, TitleHasAtMost127Bytes) {
  EXPECT_EQ(Title(TextValue(std::string(127, 'x'))), std::string(127, 'x'));
  EXPECT_EQ(Title(TextValue(std::string(128, 'x'))), std::string(127, 'x'));
}

TEST_F(ScanLineTest, TextOf1023BytesFits) {
  EXPECT_EQ(ValueText(TextValue(std::string(1023, 'x'))).size(), 1023U);
}

using ScanLineDeathTest = ScanLineTest;

constexpr int kBoundsViolation = static_cast<int>(0xC0000409);

TEST_F(ScanLineDeathTest, TextOf1024BytesEndsTheProcess) {
  EXPECT_EXIT(ValueText(TextValue(std::string(1024, 'x'))),
              testing::ExitedWithCode(kBoundsViolation), "");
}

WORD LARKSPAN_NOTES_CALL TranslateToWholeBuffer(WORD, const char*, WORD, char* out, WORD size) {
  std::memset(out, 'x', size);
  return size;
}

// 127 bytes never grow that long in the character set as it is known here.
TEST_F(ScanLineDeathTest, TitleThatFillsTheTranslationsBufferEndsTheProcess) {
  const ReplacedEntryPoint replaced("OSTranslate", TranslateToWholeBuffer);
  EXPECT_EXIT(Title(TextValue("x")), testing::ExitedWithCode(kBoundsViolation), "");
}

TEST_F(ScanLineDeathTest, InformationOf129BytesEndsTheProcess) {
  EXPECT_EXIT(Title(TextValue(std::string(129, 'x'))), testing::ExitedWithCode(kBoundsViolation),
              "");
}

}  // namespace
}  // namespace larkspan
