#include "console/show/StatusBlock.h"

#include <gtest/gtest.h>

#include "tests/console/show/RecordedSink.h"

namespace larkspan::console {
namespace {

using Writes = std::vector<std::string>;

class StatusBlockTest : public ::testing::Test {
 protected:
  StatusBlockTest() { sink_.isTerminal = true; }

  RecordedSink sink_;
};

TEST_F(StatusBlockTest, LinesAreDrawnOverThoseBefore) {
  StatusBlock block(sink_);
  block.Show({{"one", 3}, {"two", 3}});
  block.Show({{"three", 5}});
  block.Show({{"four", 4}});
  EXPECT_EQ(sink_.writes, (Writes{"one\ntwo", "<2 rows>", "three", "<1 rows>", "four"}));
}

TEST_F(StatusBlockTest, TheSameLinesAreNotDrawnAgain) {
  StatusBlock block(sink_);
  block.Show({{"one", 3}});
  block.Show({{"one", 3}});
  EXPECT_EQ(sink_.writes, Writes{"one"});
}

TEST_F(StatusBlockTest, AWholeLineStandsAbove) {
  StatusBlock block(sink_);
  block.PrintLine("first");
  block.Show({{"one", 3}, {"two", 3}});
  block.PrintLine("a\x1B[2Jb");
  EXPECT_EQ(sink_.writes, (Writes{"first\n", "one\ntwo", "<2 rows>", "a?[2Jb\none\ntwo"}));
}

TEST_F(StatusBlockTest, ANarrowerWindowHasBrokenTheLines) {
  StatusBlock block(sink_);
  block.Show({{"0123456789", 10}, {"01234", 5}});
  sink_.width = 5;
  block.Clear();
  EXPECT_EQ(sink_.writes.back(), "<3 rows>");
}

TEST_F(StatusBlockTest, NothingIsTakenAwayWhereNothingStands) {
  { StatusBlock block(sink_); }
  EXPECT_EQ(sink_.writes, Writes{});
  {
    StatusBlock block(sink_);
    block.Show({{"one", 3}});
  }
  EXPECT_EQ(sink_.writes, (Writes{"one", "<1 rows>"}));
}

TEST_F(StatusBlockTest, AWriteThatFailsIsRemembered) {
  StatusBlock block(sink_);
  EXPECT_FALSE(block.IsBroken());
  sink_.isBroken = true;
  block.PrintLine("first");
  sink_.isBroken = false;
  block.PrintLine("second");
  EXPECT_TRUE(block.IsBroken());
  EXPECT_EQ(sink_.text, "");
}

}  // namespace
}  // namespace larkspan::console
