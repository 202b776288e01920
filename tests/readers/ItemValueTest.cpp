#include "dxl/ItemValue.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "dxl/NumberSettings.h"
#include "tests/readers/ReaderTest.h"
#include "tests/support/ByteBuilder.h"

namespace larkspan {

namespace {

using namespace std::string_view_literals;
using notes_api::TIMEDATE;

constexpr TIMEDATE kMorning{{((8 * 60 + 15) * 60) * 100, 2460341}};
constexpr TIMEDATE kEvening{{((20 * 60 + 45) * 60) * 100, 2460341}};
constexpr char kMorningText[] = "<datetime>20240131T081500,00+00</datetime>";
constexpr char kEveningText[] = "<datetime>20240131T204500,00+00</datetime>";

ExactBytes ListValue(const std::vector<std::string_view>& texts) {
  ByteBuilder value;
  value.Word(notes_api::kTypeTextList).Word(static_cast<unsigned int>(texts.size()));
  for (const std::string_view text : texts) value.Word(static_cast<unsigned int>(text.size()));
  for (const std::string_view text : texts) value.Text(text);
  return value.Build();
}

ByteBuilder RangeHead(notes_api::WORD type, unsigned int entries, unsigned int pairs) {
  return ByteBuilder().Word(type).Word(entries).Word(pairs);
}

// What the value gives between its neighbours' tags, with line breaks and indents taken out.
std::string ItemText(const ExactBytes& value) {
  const std::string printed = Printed([&](tinyxml2::XMLPrinter& printer) {
    printer.OpenElement("value");
    WriteItemValue(printer, GetNumberSettings(), Bytes(value));
    printer.CloseElement();
  });
  std::string flat;
  for (std::size_t at = 0; at < printed.size(); ++at) {
    if (printed[at] == '\n') at = printed.find_first_not_of(' ', at + 1);
    flat.push_back(printed[at]);
  }
  if (flat == "<value/>") return "";
  return flat.substr(7, flat.size() - 15);
}

class ItemValueTest : public ReaderTest {};

struct ValueCase {
  ExactBytes value;
  std::string expected;
};

void ExpectItemTexts(const std::vector<ValueCase>& cases) {
  for (const auto& [value, expected] : cases) EXPECT_EQ(ItemText(value), expected);
}

TEST_F(ItemValueTest, TextIsOneElement) {
  ExpectItemTexts({{TextValue(""), "<text/>"},
                   {TextValue("a<b\r\nc"), "<text>a&lt;b<break/><break/>c</text>"},
                   {TextValue("a\0b"sv), "<text>a<break/>b</text>"},
                   {TextValue("\x0F\x3B"), "<text><nonxmlchar value=\"001B\"/></text>"}});
}

TEST_F(ItemValueTest, TextIsTranslatedToUtf8) {
  ExpectItemTexts({{TextValue("\x01\xE4"), "<text>\xC3\xA4</text>"},
                   {TextValue("\x14\x20\xAC"), "<text>\xE2\x82\xAC</text>"}});
}

TEST_F(ItemValueTest, DisplayMarksAreTakenOut) {
  ExpectItemTexts({{TextValue("\x7F$0\xFF"), "<text/>"},
                   {TextValue("a\x7F$0\xFF"
                              "b"),
                    "<text>ab</text>"},
                   {TextValue("a\x7F$0\xFF\x7F$0\xFF"
                              "b"),
                    "<text>ab</text>"},
                   {TextValue("\x7F$0"), "<text>\x7F$0</text>"},
                   {TextValue("\x7F$0x"), "<text>\x7F$0x</text>"},
                   {TextValue("\x7F\x7F$0\xFF"), "<text>\x7F</text>"},
                   // What a removal brings together is not looked at again.
                   {TextValue("\x7F$\x7F$0\xFF"
                              "0x"),
                    "<text>\x7F$0x</text>"}});
}

// The two halves of a mark come together around the one that is taken out; the search is past the
// first half. Its last byte stands for no character.
TEST_F(ItemValueTest, MarkThatComesTogetherFromTwoHalvesStays) {
  EXPECT_EQ(ItemText(TextValue("\x7F$\x7F$0\xFF"
                               "0\xFF")),
            "<text>\x7F$0\xEF\xBF\xBD</text>");
}

TEST_F(ItemValueTest, ElementsStandOnLinesOfTheirOwnButThoseInsideText) {
  const auto printed = [](const ExactBytes& value) {
    return Printed([&](tinyxml2::XMLPrinter& printer) {
      WriteItemValue(printer, GetNumberSettings(), Bytes(value));
    });
  };
  EXPECT_EQ(printed(TextValue("\n")), "<text><break/>\n</text>");
  EXPECT_EQ(printed(ListValue({"one", "two"})),
            "<textlist>\n    <text>one</text>\n    <text>two</text>\n</textlist>");
  ByteBuilder times = RangeHead(notes_api::kTypeTimeRange, 0, 1);
  times.Add(kMorning).Add(kEvening);
  EXPECT_EQ(printed(times.Build()), std::string("<datetimelist>\n    <datetimepair>\n        ") +
                                        kMorningText + "\n        " + kEveningText +
                                        "\n    </datetimepair>\n</datetimelist>");
}

TEST_F(ItemValueTest, LongestTextIsWrittenWhole) {
  const std::string text(65533, 'x');
  EXPECT_EQ(ItemText(TextValue(text)), "<text>" + text + "</text>");
}

TEST_F(ItemValueTest, TextOf65535BytesIsWrittenWhole) {
  const std::string text(65535, 'x');
  EXPECT_EQ(Printed([&](tinyxml2::XMLPrinter& printer) { WriteTextElement(printer, text); }),
            "<text>" + text + "</text>");
}

// Each byte that stands for no character becomes a replacement character of three bytes, of which
// the buffer holds 21,845.
TEST_F(ItemValueTest, TextThatGrowsInTranslationIsCutWhereTheBufferEnds) {
  std::string replacements;
  for (int i = 0; i < 21845; ++i) replacements += "\xEF\xBF\xBD";
  EXPECT_EQ(ItemText(TextValue(std::string(21845, '\x80'))), "<text>" + replacements + "</text>");
  EXPECT_EQ(ItemText(TextValue(std::string(30000, '\x80'))), "<text>" + replacements + "</text>");
}

TEST_F(ItemValueTest, TextListHasAnElementAnEntry) {
  ExpectItemTexts(
      {{ListValue({"one", "two"}), "<textlist><text>one</text><text>two</text></textlist>"},
       {ListValue({"", "x"}), "<textlist><text/><text>x</text></textlist>"},
       {ListValue({"only"}), "<textlist><text>only</text></textlist>"}});
}

TEST_F(ItemValueTest, TextListShorterThanSixBytesHasOneEmptyText) {
  ExpectItemTexts({{ListValue({}), "<textlist><text/></textlist>"},
                   {FirstBytes(ListValue({"one"}), 5), "<textlist><text/></textlist>"},
                   {FirstBytes(ListValue({"one"}), 2), "<textlist><text/></textlist>"}});
}

TEST_F(ItemValueTest, TextListWithoutEntriesIsEmpty) {
  ExpectItemTexts({{ByteBuilder().Append(ListValue({})).Word(0).Build(), "<textlist/>"},
                   {ByteBuilder().Append(ListValue({})).Text("leftover").Build(), "<textlist/>"}});
}

TEST_F(ItemValueTest, NumberHasAFullStopWhateverTheMachineUses) {
  const auto number = [](double value) {
    return ByteBuilder().Word(notes_api::kTypeNumber).Add(value).Build();
  };
  ExpectItemTexts({{number(0), "<number>0</number>"},
                   {number(-2.5), "<number>-2.5</number>"},
                   {number(1234.75), "<number>1234.75</number>"}});
}

TEST_F(ItemValueTest, NumberListLeavesItsPairsOut) {
  ByteBuilder value = RangeHead(notes_api::kTypeNumberRange, 2, 1);
  value.Add(1.5).Add(2.0).Add(10.0).Add(20.0);
  EXPECT_EQ(ItemText(value.Build()),
            "<numberlist><number>1.5</number><number>2</number></numberlist>");
}

TEST_F(ItemValueTest, DateTimeIsOneElement) {
  EXPECT_EQ(ItemText(ByteBuilder().Word(notes_api::kTypeTime).Add(kMorning).Build()), kMorningText);
}

TEST_F(ItemValueTest, DateTimeListHasItsPairsLast) {
  ByteBuilder value = RangeHead(notes_api::kTypeTimeRange, 1, 1);
  value.Add(kEvening).Add(kMorning).Add(kEvening);
  EXPECT_EQ(ItemText(value.Build()), std::string("<datetimelist>") + kEveningText +
                                         "<datetimepair>" + kMorningText + kEveningText +
                                         "</datetimepair></datetimelist>");
}

TEST_F(ItemValueTest, OtherTypesWriteNothing) {
  for (const unsigned int type : {0x0000U, 0x0001U, 0x0200U, 0x0302U, 0x0502U, 0x0600U, 0xFFFFU}) {
    EXPECT_EQ(ItemText(ByteBuilder().Word(type).Text("12345678").Build()), "") << type;
  }
}

TEST_F(ItemValueTest, ValueWithoutATypeWordWritesNothing) {
  ExpectItemTexts({{ExactBytes(), ""}, {FirstBytes(TextValue("x"), 1), ""}});
}

struct Cut {
  std::string name;
  ExactBytes value;

  // What the first so many bytes give; the last that is not longer holds.
  std::vector<std::pair<std::size_t, std::string>> givenByLength;
};

std::vector<Cut> Cuts() {
  ByteBuilder numbers = RangeHead(notes_api::kTypeNumberRange, 2, 0);
  numbers.Add(1.0).Add(2.0);
  ByteBuilder times = RangeHead(notes_api::kTypeTimeRange, 1, 1);
  times.Add(kMorning).Add(kMorning).Add(kEvening);
  const std::string morning = kMorningText;
  return {
      {"text",
       TextValue("ab"),
       {{0, ""}, {2, "<text/>"}, {3, "<text>a</text>"}, {4, "<text>ab</text>"}}},
      {"number",
       ByteBuilder().Word(notes_api::kTypeNumber).Add(2.0).Build(),
       {{0, ""}, {10, "<number>2</number>"}}},
      {"dateTime",
       ByteBuilder().Word(notes_api::kTypeTime).Add(kMorning).Build(),
       {{0, ""}, {10, morning}}},
      {"textList",
       ListValue({"ab", "c"}),
       {{0, ""},
        {2, "<textlist><text/></textlist>"},
        {6, "<textlist/>"},
        {10, "<textlist><text>ab</text></textlist>"},
        {11, "<textlist><text>ab</text><text>c</text></textlist>"}}},
      {"numberList",
       numbers.Build(),
       {{0, ""},
        {2, "<numberlist/>"},
        {14, "<numberlist><number>1</number></numberlist>"},
        {22, "<numberlist><number>1</number><number>2</number></numberlist>"}}},
      {"dateTimeList",
       times.Build(),
       {{0, ""},
        {2, "<datetimelist/>"},
        {14, "<datetimelist>" + morning + "</datetimelist>"},
        {30, "<datetimelist>" + morning + "<datetimepair>" + morning + kEveningText +
                 "</datetimepair></datetimelist>"}}},
  };
}

TEST_F(ItemValueTest, EveryTruncationGivesTheElementsThatAreWhole) {
  for (const Cut& cut : Cuts()) {
    for (std::size_t length = 0; length <= cut.value.size(); ++length) {
      std::string expected;
      for (const auto& [from, given] : cut.givenByLength) {
        if (length >= from) expected = given;
      }
      EXPECT_EQ(ItemText(FirstBytes(cut.value, length)), expected) << cut.name << " " << length;
    }
  }
}

TEST_F(ItemValueTest, CountsThatClaimMoreThanIsThereReadNothingOutside) {
  ByteBuilder list;
  list.Word(notes_api::kTypeTextList).Word(0xFFFF).Word(1).Text("x");
  ByteBuilder longEntry;
  longEntry.Word(notes_api::kTypeTextList).Word(2).Word(1).Word(0xFFFF).Text("xy");
  ByteBuilder numbers = RangeHead(notes_api::kTypeNumberRange, 0xFFFF, 0xFFFF);
  numbers.Add(7.0);
  ByteBuilder times = RangeHead(notes_api::kTypeTimeRange, 0xFFFF, 0xFFFF);
  times.Add(kMorning);
  ExpectItemTexts(
      {{list.Build(), "<textlist/>"},
       {longEntry.Build(), "<textlist><text>x</text></textlist>"},
       {numbers.Build(), "<numberlist><number>7</number></numberlist>"},
       {times.Build(), std::string("<datetimelist>") + kMorningText + "</datetimelist>"}});
}

}  // namespace

}  // namespace larkspan
