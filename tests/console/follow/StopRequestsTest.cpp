#include "console/follow/StopRequests.h"

#include <gtest/gtest.h>

#include <thread>

namespace larkspan::console {
namespace {

bool IsEventSet(HANDLE event) { return WaitForSingleObject(event, 0) == WAIT_OBJECT_0; }

TEST(StopRequestsTest, AtFirstNothingIsAskedFor) {
  const StopRequests stops;
  EXPECT_EQ(stops.Count(), 0);
  EXPECT_EQ(stops.FirstReason(), "");
  EXPECT_FALSE(stops.IsSessionEnding());
  EXPECT_FALSE(IsEventSet(stops.event()));
}

TEST(StopRequestsTest, EachRequestCountsAndTheFirstGivesTheReason) {
  StopRequests stops;
  stops.Ask("input");
  EXPECT_EQ(stops.Count(), 1);
  EXPECT_TRUE(IsEventSet(stops.event()));
  stops.Ask("user");
  EXPECT_EQ(stops.Count(), 2);
  EXPECT_TRUE(IsEventSet(stops.event()));
  EXPECT_EQ(stops.FirstReason(), "input");
}

// A caller that ends takes both pipes along, and perhaps was ended by the same Ctrl+C.
TEST(StopRequestsTest, TheEndOfACallerIsNoSecondRequest) {
  StopRequests stops;
  stops.AskOnce("output");
  StopRequests::AskCurrent("input");
  EXPECT_EQ(stops.Count(), 1);
  EXPECT_EQ(stops.FirstReason(), "output");
}

TEST(StopRequestsTest, TheEndOfACallerBehindAKeyIsNoSecondRequest) {
  StopRequests stops;
  stops.Ask("user");
  StopRequests::AskCurrent("input");
  EXPECT_EQ(stops.Count(), 1);
}

TEST(StopRequestsTest, AKeyBehindTheEndOfACallerIsASecondRequest) {
  StopRequests stops;
  StopRequests::AskCurrent("input");
  stops.Ask("user");
  EXPECT_EQ(stops.Count(), 2);
}

TEST(StopRequestsTest, AnyThreadMayAsk) {
  StopRequests stops;
  std::thread([] { StopRequests::AskCurrent("input"); }).join();
  EXPECT_EQ(stops.FirstReason(), "input");
}

TEST(StopRequestsTest, WithoutAnObjectNothingHappens) { StopRequests::AskCurrent("input"); }

}  // namespace
}  // namespace larkspan::console
