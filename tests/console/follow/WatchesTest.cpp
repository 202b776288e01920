#include "console/follow/Watches.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

TEST(StallWatchTest, SilenceGrowsUntilThereIsProgress) {
  StallWatch watch(1000);
  EXPECT_EQ(watch.Silence(1000), 0u);
  EXPECT_EQ(watch.Silence(61'000), 60'000u);
  watch.Progress(61'000);
  EXPECT_EQ(watch.Silence(61'500), 500u);
  EXPECT_EQ(watch.last(), 61'000u);
}

TEST(StallWatchTest, AnotherSizeIsProgressAndTheSameIsNone) {
  StallWatch watch(0);
  watch.Look(7, 100);
  EXPECT_EQ(watch.Silence(100), 0u);
  watch.Look(7, 200);
  EXPECT_EQ(watch.Silence(200), 100u);
  watch.Look(0, 300);
  EXPECT_EQ(watch.Silence(300), 0u);
}

class GiveUpWatchTest : public ::testing::Test {
 protected:
  GiveUpWatch watch_{{10, 20, 30, 40, 50}};
};

TEST_F(GiveUpWatchTest, NeighboursWithOneCauseAreInARow) {
  EXPECT_EQ(watch_.Lose(10, "gone"), 1u);
  EXPECT_EQ(watch_.Lose(20, "gone"), 2u);
  EXPECT_EQ(watch_.Lose(30, "gone"), 3u);
}

TEST_F(GiveUpWatchTest, ANoteThatWasFinishedInBetweenBeginsAnew) {
  watch_.Lose(10, "gone");
  EXPECT_EQ(watch_.Lose(30, "gone"), 1u);
  EXPECT_EQ(watch_.Lose(40, "gone"), 2u);
}

TEST_F(GiveUpWatchTest, AnotherCauseBeginsAnew) {
  watch_.Lose(10, "gone");
  watch_.Lose(20, "gone");
  EXPECT_EQ(watch_.Lose(30, "damaged"), 1u);
  EXPECT_EQ(watch_.Lose(40, "damaged"), 2u);
  EXPECT_EQ(watch_.Lose(50, "gone"), 1u);
}

TEST_F(GiveUpWatchTest, SeveralWorkersLoseInAnyOrder) {
  EXPECT_EQ(watch_.Lose(40, "gone"), 1u);
  EXPECT_EQ(watch_.Lose(20, "gone"), 1u);
  EXPECT_EQ(watch_.Lose(50, "damaged"), 1u);
  EXPECT_EQ(watch_.Lose(30, "gone"), 3u);
}

TEST_F(GiveUpWatchTest, TheSameNoteIsCountedOnce) {
  watch_.Lose(10, "gone");
  EXPECT_EQ(watch_.Lose(10, "gone"), 1u);
  EXPECT_EQ(watch_.Lose(20, "gone"), 2u);
}

TEST_F(GiveUpWatchTest, ANoteThatIsNotListedChangesNothing) {
  watch_.Lose(10, "gone");
  EXPECT_EQ(watch_.Lose(15, "gone"), 1u);
  EXPECT_EQ(watch_.Lose(20, "gone"), 2u);
}

TEST(SpaceWatchTest, LessThanSixtyFourMegabytesIsTooLittle) {
  using Verdict = SpaceWatch::Verdict;
  constexpr std::uint64_t kMegabyte = 1u << 20;
  SpaceWatch watch;
  EXPECT_EQ(watch.Look(64 * kMegabyte, std::nullopt), Verdict::kEnough);
  EXPECT_EQ(watch.Look(64 * kMegabyte - 1, std::nullopt), Verdict::kTooLittle);
  EXPECT_EQ(watch.Look(64 * kMegabyte - 1, 1), Verdict::kTooLittle);
}

TEST(SpaceWatchTest, LessThanTheDatabaseHasIsToldOnce) {
  using Verdict = SpaceWatch::Verdict;
  constexpr std::uint64_t kFree = 100u << 20;
  SpaceWatch watch;
  EXPECT_EQ(watch.Look(kFree, std::nullopt), Verdict::kEnough);
  EXPECT_EQ(watch.Look(kFree, kFree + 1), Verdict::kLessThanDatabase);
  EXPECT_EQ(watch.Look(kFree, kFree + 1), Verdict::kEnough);
}

TEST(SpaceWatchTest, AsMuchAsTheDatabaseHasIsEnough) {
  using Verdict = SpaceWatch::Verdict;
  constexpr std::uint64_t kFree = 100u << 20;
  SpaceWatch watch;
  EXPECT_EQ(watch.Look(kFree, kFree), Verdict::kEnough);
}

}  // namespace
}  // namespace larkspan::console
