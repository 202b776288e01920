#include "console/follow/OutcomeKeeper.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

class OutcomeKeeperTest : public ::testing::Test {
 protected:
  // Whether the file says that phase.
  bool IsWritten(const std::string& phase) const {
    console::Outcome outcome;
    return ReadOutcome(folder_.path(), outcome) == OutcomeReading::kRead &&
           outcome.progress.phase == phase;
  }

  void Enter(const std::string& phase) { keeper_.outcome().progress.phase = phase; }

  TempFolder folder_;
  OutcomeKeeper keeper_{folder_.path(), console::Outcome()};
};

TEST_F(OutcomeKeeperTest, WritesNothingWhereItMayNot) {
  keeper_.WriteNothing();
  EXPECT_TRUE(keeper_.Write());
  keeper_.Renew(1'000'000);
  EXPECT_FALSE(Exists(folder_ / L"\\outcome.json"));
}

TEST_F(OutcomeKeeperTest, IsRenewedOnceAMinute) {
  constexpr std::uint64_t kBegin = 1'000'000;
  Enter("opening");
  keeper_.Renew(kBegin);
  EXPECT_TRUE(IsWritten("opening"));
  Enter("views");
  keeper_.Renew(kBegin + 59'999);
  EXPECT_TRUE(IsWritten("opening"));
  keeper_.Renew(kBegin + 60'000);
  EXPECT_TRUE(IsWritten("views"));
  Enter("documents");
  keeper_.Renew(kBegin + 119'999);
  EXPECT_TRUE(IsWritten("views"));
}

TEST_F(OutcomeKeeperTest, IsWrittenAtOnceWhenAskedFor) {
  Enter("ended");
  EXPECT_TRUE(keeper_.Write());
  EXPECT_TRUE(IsWritten("ended"));
  EXPECT_NE(keeper_.outcome().updated, "");
}

TEST_F(OutcomeKeeperTest, GoesAlongWithItsFolder) {
  MakeFolder(folder_ / L"\\later");
  keeper_.MoveTo(folder_ / L"\\later");
  EXPECT_TRUE(keeper_.Write());
  EXPECT_TRUE(Exists(folder_ / L"\\later\\outcome.json"));
  EXPECT_FALSE(Exists(folder_ / L"\\outcome.json"));
}

TEST_F(OutcomeKeeperTest, SaysWhenItCouldNotBeWritten) {
  keeper_.MoveTo(folder_ / L"\\none");
  EXPECT_FALSE(keeper_.Write());
}

}  // namespace
}  // namespace larkspan::console
