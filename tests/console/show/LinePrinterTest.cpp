#include "console/show/LinePrinter.h"

#include <gtest/gtest.h>

#include "tests/console/show/RecordedSink.h"

namespace larkspan::console {
namespace {

class LinePrinterTest : public ::testing::Test {
 protected:
  void Show(const std::string& phase, std::uint64_t now) {
    RunView view;
    view.phase = phase;
    view.elapsed = now;
    printer_.Show(view, {}, now);
  }

  RecordedSink sink_;
  LinePrinter printer_{sink_};
};

class TerminalPrinterTest : public LinePrinterTest {
 protected:
  TerminalPrinterTest() { sink_.isTerminal = true; }
};

TEST_F(TerminalPrinterTest, TheFirstStatusComesAtOnce) {
  Show("starting", 5'000);
  EXPECT_EQ(sink_.text, "\rstarting");
}

TEST_F(TerminalPrinterTest, BlanksCoverALongerOne) {
  Show("documents", 0);
  Show("views", 100);
  Show("scanning", 200);
  EXPECT_EQ(sink_.text, "\rdocuments\rviews    \rscanning");
}

TEST_F(TerminalPrinterTest, NoMoreThanTenAreDrawnInASecond) {
  for (std::uint64_t now = 0; now < 1'000; ++now) Show("starting", now);
  EXPECT_EQ(sink_.writes.size(), 10u);
}

TEST_F(TerminalPrinterTest, TheWidthIsAskedForEachTime) {
  sink_.width = 11;
  Show("properties", 0);
  sink_.width = 6;
  Show("properties", 100);
  sink_.width = 12;
  Show("properties", 200);
  EXPECT_EQ(sink_.text, "\rproperties\rprope\rproperties ");
}

TEST_F(TerminalPrinterTest, InAnotherWidthTheWholeRowIsCovered) {
  Show("properties", 0);
  sink_.width = 8;
  Show("views", 100);
  sink_.width = 14;
  printer_.PrintLine("One");
  EXPECT_EQ(sink_.text, "\rproperties\rviews  \r             \rOne\nviews");
}

TEST_F(TerminalPrinterTest, AWindowWithoutAColumnHarmsNothing) {
  Show("views", 0);
  sink_.width = 0;
  Show("views", 100);
  printer_.Clear();
  EXPECT_EQ(sink_.text, "\rviews\rv\r \r");
}

TEST_F(TerminalPrinterTest, ALineStandsAboveTheStatus) {
  Show("views", 0);
  printer_.PrintLine("One");
  printer_.PrintLine("Two");
  EXPECT_EQ(sink_.text, "\rviews\r     \rOne\nviews\r     \rTwo\nviews");
}

TEST_F(TerminalPrinterTest, BeforeAnyStatusALineIsALine) {
  printer_.PrintLine("One");
  EXPECT_EQ(sink_.text, "One\n");
}

TEST_F(TerminalPrinterTest, ALineCannotCommandTheTerminal) {
  printer_.PrintLine("a\x1B[2Jb");
  EXPECT_EQ(sink_.text, "a?[2Jb\n");
}

TEST_F(TerminalPrinterTest, NothingIsLeftInTheEnd) {
  Show("views", 0);
  printer_.Clear();
  printer_.Clear();
  EXPECT_EQ(sink_.text, "\rviews\r     \r");
}

TEST_F(TerminalPrinterTest, AWideCharacterIsCoveredByTwoBlanks) {
  RunView view;
  view.phase = "views";
  view.path = "\xE6\x97\xA5";
  printer_.Show(view, {}, 0);
  Show("views", 100);
  EXPECT_EQ(sink_.writes.back(), "\rviews    ");
}

TEST_F(TerminalPrinterTest, ColoursTakeNoColumns) {
  sink_.takesColours = true;
  RunView view;
  view.phase = "views";
  view.lost = 3;
  printer_.Show(view, {}, 0);
  EXPECT_EQ(sink_.text, "\rviews  \x1B[31m3 lost\x1B[0m");
  Show("views", 100);
  EXPECT_EQ(sink_.writes.back(), "\rviews        ");
}

TEST_F(TerminalPrinterTest, AfterAFailedWriteNothingIsWritten) {
  sink_.isBroken = true;
  Show("views", 0);
  EXPECT_TRUE(printer_.IsBroken());
  sink_.isBroken = false;
  Show("views", 100);
  printer_.PrintLine("One");
  EXPECT_TRUE(printer_.IsBroken());
  EXPECT_EQ(sink_.text, "");
}

TEST_F(LinePrinterTest, AFileHasALineEveryTenSeconds) {
  for (std::uint64_t now = 0; now <= 25'000; now += 50) Show("views", now);
  EXPECT_EQ(sink_.text, "0:00:10  views\n0:00:20  views\n");
}

TEST_F(LinePrinterTest, AFileHasEachLineAtOnce) {
  Show("views", 0);
  printer_.PrintLine("One");
  printer_.Clear();
  EXPECT_EQ(sink_.text, "One\n");
}

}  // namespace
}  // namespace larkspan::console
