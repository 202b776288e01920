#include "console/follow/LineSource.h"

#include <gtest/gtest.h>

#include <future>

#include "tests/support/Lines.h"

namespace larkspan::console {
namespace {

constexpr std::chrono::milliseconds kLongest{120'000};

class LineSourceTest : public ::testing::Test {
 protected:
  void Send(const std::string& bytes) {
    DWORD written = 0;
    WriteFile(pipe_.writeEnd.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
              nullptr);
  }
  void End() { pipe_.writeEnd.Reset(); }

  Pipe pipe_ = MakePipe(InheritedEnd::kRead);
  LineSource source_{std::move(pipe_.readEnd)};
};

TEST_F(LineSourceTest, LinesAreGivenInTheirOrder) {
  Send("one\r\ntwo\n");
  EXPECT_EQ(source_.NextLine(), "one");
  EXPECT_EQ(source_.NextLine(), "two");
}

TEST_F(LineSourceTest, TheEventTellsOfLines) {
  Send("one\n");
  EXPECT_EQ(WaitForSingleObject(source_.event(), 120'000), WAIT_OBJECT_0);
  EXPECT_EQ(source_.Take(), Lines{"one"});
  EXPECT_EQ(source_.Take(), Lines());
  EXPECT_EQ(source_.TakeOne(), std::nullopt);
}

TEST_F(LineSourceTest, TheEndIsReachedWhenAllIsTaken) {
  Send("one\n");
  End();
  source_.AwaitEnd(kLongest);
  EXPECT_FALSE(source_.HasEnded());
  EXPECT_EQ(source_.TakeOne(), "one");
  EXPECT_TRUE(source_.HasEnded());
  EXPECT_EQ(source_.NextLine(), std::nullopt);
}

// A person's password, or that of a file, may lack its line end.
TEST_F(LineSourceTest, WhoeverWaitsForALineGetsTheLastOneWithoutItsEnd) {
  Send("one\ntwo");
  End();
  EXPECT_EQ(source_.NextLine(), "one");
  EXPECT_EQ(source_.NextLine(), "two");
  EXPECT_EQ(source_.NextLine(), std::nullopt);
}

// A worker that was ended within a line has not said it.
TEST_F(LineSourceTest, HalfALineIsNoneForWhoeverTakesWhatIsThere) {
  Send("PROGRESS: DOCUMENT: 0000");
  End();
  source_.AwaitEnd(kLongest);
  EXPECT_EQ(source_.Take(), Lines());
  EXPECT_EQ(source_.TakeOne(), std::nullopt);
}

TEST_F(LineSourceTest, TheEndIsToldOnce) {
  std::promise<void> told;
  source_.CallAtEnd([&] { told.set_value(); });
  End();
  EXPECT_EQ(told.get_future().wait_for(kLongest), std::future_status::ready);
}

TEST_F(LineSourceTest, AnEndThatHasComeIsToldAtOnce) {
  End();
  source_.AwaitEnd(kLongest);
  bool told = false;
  source_.CallAtEnd([&] { told = true; });
  EXPECT_TRUE(told);
}

TEST(LineSourceWithoutInputTest, HasEnded) {
  LineSource source{SystemHandle()};
  source.AwaitEnd(kLongest);
  EXPECT_TRUE(source.HasEnded());
}

}  // namespace
}  // namespace larkspan::console
