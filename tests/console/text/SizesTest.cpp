#include "console/text/Sizes.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

TEST(SizesTest, DigitsAreGroupedByThousands) {
  EXPECT_EQ(GroupedText(0), "0");
  EXPECT_EQ(GroupedText(999), "999");
  EXPECT_EQ(GroupedText(1'000), "1,000");
  EXPECT_EQ(GroupedText(123'456), "123,456");
  EXPECT_EQ(GroupedText(18'446'744'073'709'551'615u), "18,446,744,073,709,551,615");
}

TEST(SizesTest, OneHasItsSingular) {
  EXPECT_EQ(CountText(0, "note", "notes"), "0 notes");
  EXPECT_EQ(CountText(1, "note", "notes"), "1 note");
  EXPECT_EQ(CountText(1'001, "note", "notes"), "1,001 notes");
}

TEST(SizesTest, BytesHaveTheUnitThatFits) {
  EXPECT_EQ(BytesText(0), "0 bytes");
  EXPECT_EQ(BytesText(1), "1 byte");
  EXPECT_EQ(BytesText(1'023), "1,023 bytes");
  EXPECT_EQ(BytesText(1'024), "1.0 KB");
  EXPECT_EQ(BytesText(1'536), "1.5 KB");
  EXPECT_EQ(BytesText(1'048'575), "1.0 MB");  // Not 1024.0 KB.
  EXPECT_EQ(BytesText(1'288'490'189), "1.2 GB");
  EXPECT_EQ(BytesText(5ull << 40), "5.0 TB");
  EXPECT_EQ(BytesText(5'000ull << 40), "5000.0 TB");
}

TEST(SizesTest, ADurationHasTwoUnitsAtMost) {
  EXPECT_EQ(DurationText(0), "0 s");
  EXPECT_EQ(DurationText(59), "59 s");
  EXPECT_EQ(DurationText(60), "1 min");
  EXPECT_EQ(DurationText(179), "2 min");
  EXPECT_EQ(DurationText(3'599), "59 min");
  EXPECT_EQ(DurationText(3'600), "1 h 00 min");
  EXPECT_EQ(DurationText(3'900), "1 h 05 min");
  EXPECT_EQ(DurationText(86'399), "23 h 59 min");
  EXPECT_EQ(DurationText(86'400), "1 d 00 h");
  EXPECT_EQ(DurationText(183'600), "2 d 03 h");
}

TEST(SizesTest, AClockHasAllThree) {
  EXPECT_EQ(ClockText(0), "0:00:00");
  EXPECT_EQ(ClockText(80), "0:01:20");
  EXPECT_EQ(ClockText(360'000), "100:00:00");
}

}  // namespace
}  // namespace larkspan::console
