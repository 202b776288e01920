#include "console/CheckWatch.h"

#include <gtest/gtest.h>

#include "console/follow/StopRequests.h"

namespace larkspan::console {
namespace {

TEST(CheckWatchTest, GoesOnUntilAStopIsAskedFor) {
  CheckWatch watch(false);
  const FileProgress summing = watch.Watch("Summing");
  const FileProgress checking = watch.Watch("Checking");
  EXPECT_TRUE(summing(0, 2));
  EXPECT_TRUE(checking(1, 2));
  EXPECT_FALSE(watch.IsStopped());
  StopRequests::AskCurrent("user");
  EXPECT_FALSE(summing(1, 2));
  EXPECT_FALSE(checking(1, 2));
  EXPECT_TRUE(watch.IsStopped());
}

}  // namespace
}  // namespace larkspan::console
