#include "console/page/Numbers.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

TEST(NumbersTest, OneThingHasItsOwnWord) {
  EXPECT_EQ(CountOf(0, "note", "notes"), "0 notes");
  EXPECT_EQ(CountOf(1, "note", "notes"), "1 note");
  EXPECT_EQ(CountOf(10000, "note", "notes"), "10,000 notes");
}

TEST(NumbersTest, SizesHaveTheUnitThatFits) {
  EXPECT_EQ(SizeText(0), "0 bytes");
  EXPECT_EQ(SizeText(1), "1 byte");
  EXPECT_EQ(SizeText(1023), "1,023 bytes");
  EXPECT_EQ(SizeText(1024), "1.0 KiB");
  EXPECT_EQ(SizeText(6291456), "6.0 MiB");
  EXPECT_EQ(SizeText(1024 * 1024 - 1), "1.0 MiB");
  EXPECT_EQ(SizeText(5ull << 30), "5.0 GiB");
  EXPECT_EQ(SizeText(~0ull), "16777216.0 TiB");
}

TEST(NumbersTest, DurationsHaveTheTwoLargestUnits) {
  EXPECT_EQ(DurationText(0), "less than a second");
  EXPECT_EQ(DurationText(1), "1 second");
  EXPECT_EQ(DurationText(59), "59 seconds");
  EXPECT_EQ(DurationText(60), "1 min 0 s");
  EXPECT_EQ(DurationText(3599), "59 min 59 s");
  EXPECT_EQ(DurationText(8 * 3600 + 3 * 60 + 59), "8 h 3 min");
}

TEST(NumbersTest, TimesOfTheRecordAreSubtracted) {
  EXPECT_EQ(SecondsBetween("2026-11-22T23:59:50Z", "2026-11-23T00:00:20Z"), 30u);
  EXPECT_EQ(SecondsBetween("2028-02-28T00:00:00Z", "2028-03-01T00:00:00Z"), 2u * 86400);
  EXPECT_EQ(SecondsBetween("2026-11-22T07:40:55Z", "2026-11-22T07:40:55Z"), 0u);
}

TEST(NumbersTest, WhatIsNoTimeHasNoDuration) {
  const std::string good = "2026-11-22T07:40:55Z";
  for (const std::string bad :
       {"", "yesterday", "2026-11-22", "2026-02-30T07:40:55Z", "2026-11-22T24:00:00Z",
        "2026-11-22T07:40:55Z and more", "2026-11-22T07:40:55"}) {
    EXPECT_EQ(SecondsBetween(bad, good), std::nullopt) << bad;
    EXPECT_EQ(SecondsBetween(good, bad), std::nullopt) << bad;
  }
  EXPECT_EQ(SecondsBetween(good, "2026-11-22T07:40:54Z"), std::nullopt);
}

TEST(NumbersTest, OnlyTimesOfTheRecordGetAnotherForm) {
  EXPECT_EQ(TimeText("2026-11-22T07:40:55Z"), "2026-11-22 07:40:55 UTC");
  EXPECT_EQ(TimeText("11/22/26 08:03:34 UTC"), "11/22/26 08:03:34 UTC");
  EXPECT_EQ(TimeText(""), "");
}

}  // namespace
}  // namespace larkspan::console
