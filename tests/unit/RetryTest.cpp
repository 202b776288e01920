#include "base/Retry.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "tests/support/PauseRecorder.h"

namespace larkspan {
namespace {

constexpr std::chrono::milliseconds kPause{250};

// Runs up to five attempts, of which the successful-th is the first that succeeds.
class RetryTest : public testing::Test {
 protected:
  bool RunUntil(int successful, int attempts = 5) {
    const auto attempt = [&] { return ++made_ == successful; };
    const auto onRetry = [&](int count) { retries_.push_back(count); };
    return RetryWithPause(attempts, kPause, attempt, onRetry);
  }

  int made_ = 0;
  std::vector<int> retries_;
  PauseRecorder recorder_;
};

TEST_F(RetryTest, FirstSuccessNeedsNoRetry) {
  EXPECT_TRUE(RunUntil(1));
  EXPECT_EQ(made_, 1);
  EXPECT_TRUE(retries_.empty());
}

TEST_F(RetryTest, FirstSuccessNeedsNoPause) {
  RunUntil(1);
  EXPECT_TRUE(recorder_.pauses().empty());
}

TEST_F(RetryTest, LaterSuccessEndsTheAttempts) {
  EXPECT_TRUE(RunUntil(3));
  EXPECT_EQ(made_, 3);
}

TEST_F(RetryTest, EveryRetryIsToldWithTheAttemptsMade) {
  RunUntil(3);
  EXPECT_EQ(retries_, (std::vector<int>{1, 2}));
}

TEST_F(RetryTest, EveryRetryPauses) {
  RunUntil(3);
  EXPECT_EQ(recorder_.pauses(), (std::vector<long long>{250, 250}));
}

TEST_F(RetryTest, LastAttemptCanSucceed) { EXPECT_TRUE(RunUntil(5)); }

TEST_F(RetryTest, AllAttemptsCanFail) {
  EXPECT_FALSE(RunUntil(6));
  EXPECT_EQ(made_, 5);
}

TEST_F(RetryTest, LastFailureIsNoRetry) {
  RunUntil(6);
  EXPECT_EQ(retries_, (std::vector<int>{1, 2, 3, 4}));
}

TEST_F(RetryTest, LastFailureDoesNotPause) {
  RunUntil(6);
  EXPECT_EQ(recorder_.pauses().size(), 4u);
}

TEST_F(RetryTest, SingleAttemptIsNotRetried) {
  EXPECT_FALSE(RunUntil(2, 1));
  EXPECT_TRUE(retries_.empty());
}

TEST_F(RetryTest, RetryIsToldBeforeThePause) {
  std::vector<char> order;
  PauseRecorder recorder([&] { order.push_back('p'); });
  RetryWithPause(
      2, kPause, [] { return false; }, [&](int) { order.push_back('r'); });
  EXPECT_EQ(order, (std::vector<char>{'r', 'p'}));
}

TEST(PauseTest, InnerFunctionStandsInUntilItsEnd) {
  PauseRecorder outer;
  { const PauseRecorder inner; }
  Pause(std::chrono::milliseconds(7));
  EXPECT_EQ(outer.pauses(), std::vector<long long>{7});
}

TEST(PauseTest, OuterFunctionIsNotCalledMeanwhile) {
  PauseRecorder outer;
  PauseRecorder inner;
  Pause(std::chrono::milliseconds(7));
  EXPECT_TRUE(outer.pauses().empty());
}

}  // namespace
}  // namespace larkspan
