#include "dxl/DateTime.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/readers/ReaderTest.h"

namespace larkspan {

namespace {

constexpr notes_api::DWORD kNoDate = 0xFFFFFF;
constexpr notes_api::DWORD kNoTime = 0xFFFFFFFF;

// 31 January 2024 has the Julian day number 2460341; 14:30:05.27 is so many hundredths of a second.
constexpr notes_api::DWORD kDate = 2460341;
constexpr notes_api::DWORD kTime = ((14 * 60 + 30) * 60 + 5) * 100 + 27;

std::string Text(notes_api::DWORD time, notes_api::DWORD date) {
  return Printed([&](tinyxml2::XMLPrinter& printer) { WriteDateTime(printer, {{time, date}}); });
}

using DateTimeTest = ReaderTest;

TEST_F(DateTimeTest, HasBothPartsInUniversalTime) {
  EXPECT_EQ(Text(kTime, kDate), "<datetime>20240131T143005,27+00</datetime>");
}

TEST_F(DateTimeTest, ZoneAndDaylightSavingOfTheValueDoNotShow) {
  constexpr notes_api::DWORD kZoneOneEastWithDaylight = 0xC1000000;
  EXPECT_EQ(Text(kTime, kDate | kZoneOneEastWithDaylight),
            "<datetime>20240131T143005,27+00</datetime>");
}

TEST_F(DateTimeTest, WithoutATimePartIsADate) {
  EXPECT_EQ(Text(kNoTime, kDate), "<datetime>20240131</datetime>");
}

TEST_F(DateTimeTest, WithoutADatePartIsATimeWithNoZone) {
  EXPECT_EQ(Text(kTime, kNoDate), "<datetime>T143005,27</datetime>");
}

TEST_F(DateTimeTest, WithNeitherPartIsWrittenAsATime) {
  const std::string text = Text(kNoTime, kNoDate);
  EXPECT_EQ(text.find("<datetime>T"), 0U) << text;
  EXPECT_EQ(text.find('+'), std::string::npos) << text;
}

TEST_F(DateTimeTest, FirstAndLastMomentOfADay) {
  EXPECT_EQ(Text(0, kDate), "<datetime>20240131T000000,00+00</datetime>");
  EXPECT_EQ(Text(8639999, kDate), "<datetime>20240131T235959,99+00</datetime>");
}

}  // namespace

}  // namespace larkspan
