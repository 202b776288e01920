#include "console/listing/ScanValues.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace larkspan::console {
namespace {

TEST(ScanTimeTest, ATimeIsACalendarTimeWithItsHundredths) {
  EXPECT_EQ(TimeOf("6372451848910"), "2020-05-06T07:08:09.10Z");
  EXPECT_EQ(TimeOf("6369348407295"), "2019-05-13T02:27:52.95Z");
  EXPECT_EQ(TimeOf("6368719680000"), "2019-03-01T08:00:00.00Z");
  EXPECT_EQ(TimeOf("6371879039999"), "2020-02-29T23:59:59.99Z");
}

TEST(ScanTimeTest, TheYearsAreThoseFrom1To9999) {
  EXPECT_EQ(TimeOf("17280000"), "0001-01-01T00:00:00.00Z");
  EXPECT_EQ(TimeOf("31553807039999"), "9999-12-31T23:59:59.99Z");
  for (const char* const outside :
       {"17279999", "31553807040000", "0", "8640000", "-1", "37093644329163000",
        "9223372036854775807", "-9223372036854775808", "9223372036854775808"}) {
    EXPECT_EQ(TimeOf(outside), outside);
  }
}

// A number that the exporter has written has one form.
TEST(ScanTimeTest, WhatIsNoNumberOfTheExporterStandsAsItIs) {
  for (const char* const text :
       {"", "gestern fr\xC3\xBCh", "+6372451848910", " 6372451848910", "06372451848910",
        "6372451848910 ", "6372451848910.0", "0x5CBB0A0A0CE", "-"}) {
    EXPECT_EQ(TimeOf(text), text);
  }
}

TEST(ScanSizeTest, AWholeNumberHasNoPoint) {
  EXPECT_EQ(SizeOf(0), "0");
  EXPECT_EQ(SizeOf(524288), "524288");
  EXPECT_EQ(SizeOf(-3), "-3");
  EXPECT_EQ(SizeOf(9007199254740993.0), "9007199254740992");
  EXPECT_EQ(SizeOf(1e23), "99999999999999991611392");
}

TEST(ScanSizeTest, NothingOfAnOddNumberIsLost) {
  EXPECT_EQ(SizeOf(1048576.5), "1048576.5");
  EXPECT_EQ(SizeOf(-1.5), "-1.5");
  EXPECT_EQ(SizeOf(0.1), "0.1");
  EXPECT_EQ(SizeOf(-0.0), "-0");
  EXPECT_EQ(SizeOf(std::numeric_limits<double>::infinity()), "Infinity");
  EXPECT_EQ(SizeOf(-std::numeric_limits<double>::infinity()), "-Infinity");
  EXPECT_EQ(SizeOf(std::bit_cast<double>(0x7FF8000000000000)), "NaN");
  EXPECT_EQ(SizeOf(std::bit_cast<double>(0xFFF8000000000001)), "NaN(FFF8000000000001)");
}

// The number that a text of SizeOf stands for, or the bits of one that is none.
std::uint64_t BitsOf(const std::string& text) {
  std::uint64_t bits = 0;
  if (text.starts_with("NaN(")) {
    std::from_chars(text.data() + 4, text.data() + text.size() - 1, bits, 16);
    return bits;
  }
  if (text == "NaN") return 0x7FF8000000000000;
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return std::bit_cast<std::uint64_t>(number);
}

TEST(ScanSizeTest, AnyNumberReadsBackTheSame) {
  std::mt19937_64 random(20260115);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();
    ASSERT_EQ(BitsOf(SizeOf(std::bit_cast<double>(bits))), bits) << bits;
  }
  for (const double edge :
       {std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::max(),
        std::numeric_limits<double>::lowest()}) {
    EXPECT_EQ(BitsOf(SizeOf(edge)), std::bit_cast<std::uint64_t>(edge));
  }
}

}  // namespace
}  // namespace larkspan::console
