#include "console/show/Rate.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

// So many a second, told once a second.
void AddSteadily(Rate& rate, std::uint64_t fromSecond, std::uint64_t toSecond, std::uint64_t first,
                 std::uint64_t perSecond) {
  for (std::uint64_t second = fromSecond; second <= toSecond; ++second)
    rate.Add(second * 1000, first + (second - fromSecond) * perSecond);
}

TEST(RateTest, NothingIsKnownAtFirst) {
  Rate rate;
  EXPECT_FALSE(rate.PerSecond());
  EXPECT_FALSE(rate.SecondsFor(10));
}

TEST(RateTest, AFewSecondsAreAwaited) {
  Rate rate;
  rate.Add(0, 0);
  rate.Add(2'999, 1'000);
  EXPECT_FALSE(rate.PerSecond());
  rate.Add(3'000, 1'000);
  EXPECT_TRUE(rate.PerSecond());
}

TEST(RateTest, AFewDocumentsAreAwaited) {
  Rate rate;
  rate.Add(0, 0);
  rate.Add(60'000, 4);
  EXPECT_FALSE(rate.PerSecond());
  rate.Add(60'000, 5);
  EXPECT_TRUE(rate.PerSecond());
}

TEST(RateTest, ASteadyPaceIsToldAsItIs) {
  Rate rate;
  AddSteadily(rate, 0, 100, 0, 20);
  EXPECT_DOUBLE_EQ(*rate.PerSecond(), 20);
  EXPECT_EQ(rate.SecondsFor(2'000), 100u);
  EXPECT_EQ(rate.SecondsFor(2'001), 101u);  // Rather a second too many.
}

TEST(RateTest, WhatIsHalfAMinuteAgoNoLongerCounts) {
  Rate rate;
  AddSteadily(rate, 0, 100, 0, 100);
  AddSteadily(rate, 101, 131, 10'010, 10);
  EXPECT_NEAR(*rate.PerSecond(), 10, 0.01);
}

TEST(RateTest, HalfOfTheWindowCountsHalf) {
  Rate rate;
  AddSteadily(rate, 0, 100, 0, 100);
  AddSteadily(rate, 101, 115, 10'000, 0);
  EXPECT_NEAR(*rate.PerSecond(), 50, 4);
}

// In half a minute there is not even one of them.
TEST(RateTest, SlowDocumentsHaveAPaceToo) {
  Rate rate;
  for (std::uint64_t done = 0; done <= 20; ++done) rate.Add(done * 60'000, done);
  EXPECT_NEAR(*rate.PerSecond(), 1.0 / 60, 0.001);
  EXPECT_EQ(rate.SecondsFor(3), 180u);
}

TEST(RateTest, AStandstillMakesTheTimeLeftGrow) {
  Rate rate;
  AddSteadily(rate, 0, 60, 0, 10);
  const std::uint64_t before = *rate.SecondsFor(100);
  for (std::uint64_t second = 61; second < 3'600; ++second) rate.Add(second * 1000, 600);
  EXPECT_GT(*rate.SecondsFor(100), 100 * before);
}

TEST(RateTest, ASmallerNumberBeginsANewCount) {
  Rate rate;
  AddSteadily(rate, 0, 100, 0, 100);
  rate.Add(101'000, 0);
  EXPECT_FALSE(rate.PerSecond());
  AddSteadily(rate, 101, 110, 0, 10);
  EXPECT_DOUBLE_EQ(*rate.PerSecond(), 10);
}

TEST(RateTest, ManySamplesDoNotShortenTheWindow) {
  Rate rate;
  for (std::uint64_t millisecond = 0; millisecond <= 40'000; ++millisecond)
    rate.Add(millisecond, millisecond < 20'000 ? 0 : millisecond - 20'000);
  EXPECT_NEAR(*rate.PerSecond(), 20'000.0 / 30, 500);
}

}  // namespace
}  // namespace larkspan::console
