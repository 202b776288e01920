#include "console/show/MakeRunDisplay.h"

#include <gtest/gtest.h>

#include "tests/console/show/RecordedSink.h"

namespace larkspan::console {
namespace {

class RunDisplayTest : public testing::Test {
 protected:
  static RunView Documents(std::uint64_t done) {
    RunView view;
    view.phase = "documents";
    view.documents = 100;
    view.documentsDone = done;
    view.path = "orders.nsf";
    return view;
  }

  RecordedSink output_;
  RecordedSink errors_;
};

TEST_F(RunDisplayTest, ATerminalShowsAStatus) {
  output_.isTerminal = true;
  const auto display = MakeRunDisplay(DisplayMode::kTerminalOrPlain, output_, errors_);
  display->Update(Documents(7), 0);
  EXPECT_NE(output_.text.find("documents 7/100"), std::string::npos) << output_.text;
}

TEST_F(RunDisplayTest, QuietSaysNothingButHowItEndedBadly) {
  const auto display = MakeRunDisplay(DisplayMode::kQuiet, output_, errors_);
  display->Update(Documents(7), 0);
  display->Message("Hello");
  display->End({ExitCode::kWhole, "", "out", std::nullopt, 3});
  EXPECT_EQ(errors_.text, "");
  display->End({ExitCode::kIncomplete, "The run broke off.", "out", std::nullopt, 3});
  EXPECT_EQ(output_.text, "");
  EXPECT_EQ(errors_.text, "larkspan-console: Incomplete: The run broke off.\n");
}

}  // namespace
}  // namespace larkspan::console
