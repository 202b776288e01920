// How a list of notes is cut.
#include "console/parts/Slices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace larkspan::console {
namespace {

using Ids = std::vector<std::uint32_t>;

Ids IdsUpTo(std::size_t count) {
  Ids ids(count);
  std::iota(ids.begin(), ids.end(), 0x902u);
  return ids;
}

std::vector<std::size_t> Lengths(std::size_t count, std::size_t workers) {
  const Ids ids = IdsUpTo(count);
  std::vector<std::size_t> lengths;
  for (const Slice& slice : CutIntoSlices(ids, workers)) lengths.push_back(slice.size());
  return lengths;
}

TEST(SlicesTest, TogetherTheyAreTheList) {
  for (const std::size_t count : {0u, 1u, 7u, 8u, 9u, 100u, 5003u}) {
    for (const std::size_t workers : {1u, 2u, 3u, 16u}) {
      const Ids ids = IdsUpTo(count);
      Ids joined;
      for (const Slice& slice : CutIntoSlices(ids, workers)) {
        EXPECT_FALSE(slice.empty());
        joined.insert(joined.end(), slice.begin(), slice.end());
      }
      EXPECT_EQ(joined, ids) << count << " notes, " << workers << " workers";
    }
  }
}

TEST(SlicesTest, TheyBecomeShorter) {
  const std::vector<std::size_t> lengths = Lengths(3000, 3);
  EXPECT_TRUE(std::is_sorted(lengths.rbegin(), lengths.rend()));
  EXPECT_EQ(lengths.front(), 500u);
  EXPECT_LE(lengths.back(), 64u);
}

TEST(SlicesTest, SeveralOfOneLengthFollowEachOther) {
  const std::vector<std::size_t> expected = {10, 10, 10, 8, 8, 8, 6};
  EXPECT_EQ(Lengths(60, 3), expected);
}

// Each costs the start of a worker.
TEST(SlicesTest, TheShortestAreAnEighthOfAWorkersShare) {
  const std::vector<std::size_t> lengths = Lengths(1000, 4);
  EXPECT_EQ(*std::min_element(lengths.begin(), lengths.end() - 1), 31u);
  EXPECT_EQ(lengths.size(), 17u);
}

TEST(SlicesTest, TheLastOfALongListAreNoLongerThanTwoSecondsOfWork) {
  const std::vector<std::size_t> lengths = Lengths(100'000, 2);
  EXPECT_EQ(*std::min_element(lengths.begin(), lengths.end() - 1), 64u);
}

TEST(SlicesTest, ALongOneIsNoLongerThanAWorkersShareOfTheRest) {
  std::size_t left = 3000;
  for (const std::size_t length : Lengths(3000, 3)) {
    EXPECT_LE(length, std::max<std::size_t>(64, left / 3));
    left -= length;
  }
}

TEST(SlicesTest, NoneIsLongerThanAThousand) {
  const std::vector<std::size_t> lengths = Lengths(100'000, 2);
  EXPECT_EQ(*std::max_element(lengths.begin(), lengths.end()), 1000u);
}

TEST(SlicesTest, AShortListIsOne) { EXPECT_EQ(Lengths(8, 3), std::vector<std::size_t>{8}); }

}  // namespace
}  // namespace larkspan::console
