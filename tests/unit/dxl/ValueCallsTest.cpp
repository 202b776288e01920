// What values of a view give the library, and take from it.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

#include "dxl/DateTime.h"
#include "dxl/ItemValue.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::BOOL;
using notes_api::WORD;

std::string Element(const std::function<void(tinyxml2::XMLPrinter&)>& write) {
  tinyxml2::XMLPrinter printer;
  write(printer);
  return printer.CStr();
}

// What the library was given to translate, and the room that it was offered.
const char* givenAddress = nullptr;
std::string givenText;
WORD offeredBytes = 0;

WORD LARKSPAN_NOTES_CALL TakeText(WORD, const char* text, WORD length, char*, WORD size) {
  givenAddress = text;
  givenText = std::string(text, length);
  offeredBytes = size;
  return 0;
}

class TextCallsTest : public testing::TestWithParam<std::string_view> {};

TEST_P(TextCallsTest, TextIsGivenWithoutMarksAndAllTheRoomThereIs) {
  const ReplacedEntryPoint replaced("OSTranslate", TakeText);
  givenAddress = nullptr;
  const std::string text =
      Element([](tinyxml2::XMLPrinter& printer) { WriteTextElement(printer, GetParam()); });
  EXPECT_EQ(text, "<text/>\n");
  EXPECT_NE(givenAddress, nullptr);
  EXPECT_EQ(givenText, GetParam().empty() ? "" : "ab");
  EXPECT_EQ(offeredBytes, 65535);
}

INSTANTIATE_TEST_SUITE_P(Texts, TextCallsTest,
                         testing::Values(std::string_view(), "ab",
                                         "a\x7F$0\xFF"
                                         "b"));

notes_api::TIME fields;

BOOL LARKSPAN_NOTES_CALL LeaveFields(notes_api::TIME* time) {
  *time = fields;
  return 0;
}

std::string Text(int year, int month, int day, int hour, int minute, int second, int hundredth) {
  constexpr notes_api::TIMEDATE kBothParts = {{0, 2460341}};
  const ReplacedEntryPoint replaced("TimeGMToLocalZone", LeaveFields);
  fields = {.year = year,
            .month = month,
            .day = day,
            .weekday = 0,
            .hour = hour,
            .minute = minute,
            .second = second,
            .hundredth = hundredth,
            .dst = 0,
            .zone = 0,
            .gm = {}};
  return Element([&](tinyxml2::XMLPrinter& printer) { WriteDateTime(printer, kBothParts); });
}

class DateTimeCallsTest : public NotesFixture {
 protected:
  DateTimeCallsTest() { Start(); }
};

TEST_F(DateTimeCallsTest, FieldsHaveZerosInFront) {
  EXPECT_EQ(Text(0, 0, 0, 0, 0, 0, 0), "<datetime>00000000T000000,00+00</datetime>\n");
  EXPECT_EQ(Text(999, 1, 9, 1, 2, 3, 4), "<datetime>09990109T010203,04+00</datetime>\n");
  EXPECT_EQ(Text(9999, 99, 99, 99, 99, 99, 99), "<datetime>99999999T999999,99+00</datetime>\n");
}

TEST_F(DateTimeCallsTest, FieldsThatNoDateHasAreWrittenAsTheyAre) {
  EXPECT_EQ(Text(10000, 100, -5, -12, 100, 2147483647, -2147483647 - 1),
            "<datetime>10000100-5T-121002147483647,-2147483648+00</datetime>\n");
  EXPECT_EQ(Text(-5, 1, 1, 0, 0, 0, 0), "<datetime>-0050101T000000,00+00</datetime>\n");
  EXPECT_EQ(Text(-12345, 1, 1, 0, 0, 0, 0), "<datetime>-123450101T000000,00+00</datetime>\n");
}

}  // namespace
}  // namespace larkspan
