#include "console/text/Times.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

TEST(TimesTest, TimesOfTheRecordAreSubtracted) {
  EXPECT_EQ(SecondsBetween("2026-11-22T23:59:50Z", "2026-11-23T00:00:20Z"), 30u);
  EXPECT_EQ(SecondsBetween("2028-02-28T00:00:00Z", "2028-03-01T00:00:00Z"), 2u * 86400);
  EXPECT_EQ(SecondsBetween("2026-11-22T07:40:55Z", "2026-11-22T07:40:55Z"), 0u);
}

TEST(TimesTest, WhatIsNoTimeHasNoDuration) {
  const std::string good = "2026-11-22T07:40:55Z";
  for (const std::string bad :
       {"", "yesterday", "2026-11-22", "2026-02-30T07:40:55Z", "2026-11-22T24:00:00Z",
        "2026-11-22T07:40:55Z and more", "2026-11-22T07:40:55"}) {
    EXPECT_EQ(SecondsBetween(bad, good), std::nullopt) << bad;
    EXPECT_EQ(SecondsBetween(good, bad), std::nullopt) << bad;
  }
  EXPECT_EQ(SecondsBetween(good, "2026-11-22T07:40:54Z"), std::nullopt);
}

TEST(TimesTest, OnlyTimesOfTheRecordGetAnotherForm) {
  EXPECT_EQ(TimeText("2026-11-22T07:40:55Z"), "2026-11-22 07:40:55 UTC");
  EXPECT_EQ(TimeText("11/22/26 08:03:34 UTC"), "11/22/26 08:03:34 UTC");
  EXPECT_EQ(TimeText(""), "");
}

}  // namespace
}  // namespace larkspan::console
