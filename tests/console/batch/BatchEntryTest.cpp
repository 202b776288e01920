#include "console/batch/BatchEntry.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

BatchEntry Done(ExitCode code) {
  BatchEntry entry;
  entry.state = BatchState::kDone;
  entry.code = code;
  return entry;
}

BatchEntry In(BatchState state) {
  BatchEntry entry;
  entry.state = state;
  return entry;
}

TEST(BatchEntryTest, TheWorstCodeIsTheFirstOfItsOrder) {
  constexpr ExitCode kOrder[] = {ExitCode::kStopped, ExitCode::kIncomplete, ExitCode::kCouldNotRun,
                                 ExitCode::kLosses, ExitCode::kWhole};
  for (std::size_t worse = 0; worse < std::size(kOrder); ++worse)
    for (std::size_t better = worse; better < std::size(kOrder); ++better) {
      EXPECT_EQ(WorstCode({Done(kOrder[better]), Done(kOrder[worse])}), kOrder[worse]);
      EXPECT_EQ(WorstCode({Done(kOrder[worse]), Done(kOrder[better])}), kOrder[worse]);
    }
  EXPECT_EQ(WorstCode({}), ExitCode::kWhole);
  EXPECT_EQ(WorstCode({Done(ExitCode::kUsage)}), ExitCode::kCouldNotRun);
}

TEST(BatchEntryTest, EachEntryIsCountedOnce) {
  BatchEntry before = Done(ExitCode::kLosses);
  before.state = BatchState::kFinished;
  const BatchCounts counts =
      CountEntries({Done(ExitCode::kWhole), before, Done(ExitCode::kIncomplete),
                    Done(ExitCode::kCouldNotRun), Done(ExitCode::kUsage), Done(ExitCode::kStopped),
                    In(BatchState::kRunning), In(BatchState::kWaiting), In(BatchState::kLeftOut)});
  EXPECT_EQ(counts.all, 9u);
  EXPECT_EQ(counts.whole, 1u);
  EXPECT_EQ(counts.withLosses, 1u);
  EXPECT_EQ(counts.before, 1u);
  EXPECT_EQ(counts.incomplete, 1u);
  EXPECT_EQ(counts.failed, 2u);
  EXPECT_EQ(counts.stopped, 1u);
  EXPECT_EQ(counts.running, 1u);
  EXPECT_EQ(counts.notBegun, 1u);
  EXPECT_EQ(counts.leftOut, 1u);
  EXPECT_EQ(counts.Done(), 5u);
}

TEST(BatchEntryTest, EachStateHasItsWord) {
  EXPECT_STREQ(StateWord(Done(ExitCode::kWhole)), "whole");
  EXPECT_STREQ(StateWord(Done(ExitCode::kLosses)), "losses");
  EXPECT_STREQ(StateWord(Done(ExitCode::kCouldNotRun)), "failed");
  EXPECT_STREQ(StateWord(Done(ExitCode::kUsage)), "failed");
  EXPECT_STREQ(StateWord(Done(ExitCode::kIncomplete)), "incomplete");
  EXPECT_STREQ(StateWord(Done(ExitCode::kStopped)), "stopped");
  EXPECT_STREQ(StateWord(In(BatchState::kRunning)), "running");
  EXPECT_STREQ(StateWord(In(BatchState::kWaiting)), "waiting");
  EXPECT_STREQ(StateWord(In(BatchState::kLeftOut)), "folder");
}

}  // namespace
}  // namespace larkspan::console
