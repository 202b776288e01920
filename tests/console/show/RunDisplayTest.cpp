#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "console/show/MakeRunDisplay.h"
#include "tests/console/show/RecordedSink.h"

namespace larkspan::console {
namespace {

class RunDisplayTest : public ::testing::Test {
 protected:
  std::unique_ptr<RunDisplay> Make(DisplayMode mode) {
    return MakeRunDisplay(mode, output_, errors_);
  }

  static RunView InPhase(const std::string& phase, std::uint64_t done = 0) {
    RunView view;
    view.phase = phase;
    view.documents = 100;
    view.documentsDone = done;
    return view;
  }

  static Loss LossOf(std::uint32_t id) {
    return {LossKind::kNote, id, "open", "Note has been deleted"};
  }

  // The kinds of the events, each with a blank behind it.
  std::string Kinds() const {
    std::string kinds;
    std::istringstream lines(output_.text);
    for (std::string line; std::getline(lines, line);)
      kinds += nlohmann::json::parse(line).at("kind").get<std::string>() + " ";
    return kinds;
  }

  static NoteCounts Counts(std::uint64_t listed, std::uint64_t lost) {
    NoteCounts counts;
    counts.listed = listed;
    counts.exported = listed - lost;
    counts.lost = lost;
    return counts;
  }

  RecordedSink output_;
  RecordedSink errors_;
};

TEST_F(RunDisplayTest, APersonReadsWhatHappens) {
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  display->Start({"Mill/Example", "orders.nsf", "D:\\out", "archive", {}});
  display->Restart({0x90A, "crash"});
  display->Restart({std::nullopt, "stall"});
  display->Lost({LossOf(0x90A)});
  display->Lost({{LossKind::kAcl, std::nullopt, "acl", "No access"}});
  display->Warn({"disk", "The disk is small."});
  display->Retry({"without views", "a crash among the views"});
  display->Ready({ExitCode::kLosses, Counts(10, 1), 2, 0, 0});
  display->Message("Anything\nelse");
  EXPECT_EQ(output_.text,
            "Exporting Mill/Example!!orders.nsf to D:\\out\n"
            "The worker ended by a crash at note 0000090A; the export goes on.\n"
            "The worker ended by a stall; the export goes on.\n"
            "Lost: 0000090A (open): Note has been deleted\n"
            "Lost: acl: No access\n"
            "Warning: The disk is small.\n"
            "Taking the export up again without views: a crash among the views\n"
            "Ready to be placed, with 9 notes and 2 losses; waiting for 'place' or 'leave'.\n"
            "Anything\nelse\n");
  EXPECT_EQ(errors_.text, "");
}

TEST_F(RunDisplayTest, AStopSaysWhy) {
  for (const char* by : {"user", "input", "output", "disk", "stall", "give-up", "force"}) {
    output_.text.clear();
    Make(DisplayMode::kTerminalOrPlain)->Stop(by);
    EXPECT_EQ(output_.text.find("Stopping: "), std::string::npos) << by;
    EXPECT_NE(output_.text, "");
  }
}

TEST_F(RunDisplayTest, TheEndSaysHowItWent) {
  struct {
    EndEvent end;
    const char* text;
  } cases[] = {
      {{ExitCode::kWhole, "", "D:\\out", Counts(58, 0), 60},
       "Whole\n58 of 58 notes exported in 1 min: D:\\out\n"},
      {{ExitCode::kLosses, "1 note is lost.", "D:\\out", Counts(4'567, 1), 60},
       "Done with losses: 1 note is lost.\n"
       "4,566 of 4,567 notes exported in 1 min, 1 lost: D:\\out\n"},
      {{ExitCode::kStopped, "By the user.", "D:\\out", std::nullopt, 1}, "Stopped: By the user.\n"},
      {{ExitCode::kCouldNotRun, "There is no database.", "D:\\out", std::nullopt, 1},
       "Could not run: There is no database.\n"},
      {{ExitCode::kIncomplete, "It broke off.", "D:\\out", std::nullopt, 1},
       "Incomplete: It broke off.\n"},
  };
  for (const auto& one : cases) {
    output_.text.clear();
    Make(DisplayMode::kTerminalOrPlain)->End(one.end);
    EXPECT_EQ(output_.text, one.text);
  }
}

TEST_F(RunDisplayTest, OfVeryManyLossesTwentyHaveALine) {
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  for (std::uint32_t id = 1; id <= 100; ++id) display->Lost({LossOf(id)});
  EXPECT_EQ(output_.writes.size(), 21u);
  EXPECT_EQ(output_.writes[19], "Lost: 00000014 (open): Note has been deleted\n");
  EXPECT_EQ(output_.writes[20], "Further losses are only counted here.\n");
}

TEST_F(RunDisplayTest, ATerminalHasAStatusUntilTheEnd) {
  output_.isTerminal = true;
  {
    const auto display = Make(DisplayMode::kTerminalOrPlain);
    display->Update(InPhase("scanning"), 0);
    EXPECT_EQ(output_.text, "\rscanning");
  }
  EXPECT_EQ(output_.text, "\rscanning\r        \r");
}

TEST_F(RunDisplayTest, AnErrorOnTheSameTerminalTakesTheStatusAway) {
  output_.isTerminal = errors_.isTerminal = true;
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  display->Update(InPhase("scanning"), 0);
  display->Error("It failed.");
  EXPECT_EQ(output_.text, "\rscanning\r        \r");
  EXPECT_EQ(errors_.text, "larkspan-console: It failed.\n");
}

TEST_F(RunDisplayTest, ThePaceIsThatOfTheDocuments) {
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  display->Update(InPhase("views"), 0);
  for (std::uint64_t done = 0; done <= 40; ++done)
    display->Update(InPhase("documents", done), 60'000 + done * 500);
  EXPECT_NE(output_.writes.back().find("documents 40/100  40%  2.0/s  30 s left"),
            std::string::npos)
      << output_.text;
}

TEST_F(RunDisplayTest, AProgramReadsEvents) {
  const auto display = Make(DisplayMode::kJson);
  display->Start({});
  display->Update(InPhase("starting"), 0);
  display->Message("Nothing for a program");
  display->Restart({});
  display->Lost({LossOf(1)});
  display->Warn({});
  display->Stop("user");
  display->Retry({});
  display->Ready({});
  display->End({});
  display->Finish();
  EXPECT_EQ(Kinds(), "start phase progress restart lost warning stop retry ready end ");
}

TEST_F(RunDisplayTest, ProgressIsAnEventOnceASecond) {
  const auto display = Make(DisplayMode::kJson);
  for (std::uint64_t now = 0; now < 3'000; now += 10)
    display->Update(InPhase(now < 1'500 ? "views" : "documents"), now);
  EXPECT_EQ(Kinds(), "phase progress progress phase progress ");
}

TEST_F(RunDisplayTest, EventsOfLossesAreNotLimited) {
  const auto display = Make(DisplayMode::kJson);
  for (std::uint32_t id = 1; id <= 100; ++id) display->Lost({LossOf(id)});
  EXPECT_EQ(output_.writes.size(), 100u);
}

TEST_F(RunDisplayTest, AnEventIsOneWrite) {
  const auto display = Make(DisplayMode::kJson);
  display->Stop("user");
  ASSERT_EQ(output_.writes.size(), 1u);
  EXPECT_TRUE(output_.writes[0].ends_with("}\n"));
}

TEST_F(RunDisplayTest, ErrorsOfAProgramGoBesideTheEvents) {
  const auto display = Make(DisplayMode::kJson);
  display->Error("It failed.\x1B[2J");
  EXPECT_EQ(output_.text, "");
  EXPECT_EQ(errors_.text, "larkspan-console: It failed.?[2J\n");
}

TEST_F(RunDisplayTest, AnOutputThatNobodyReadsIsTold) {
  for (const DisplayMode mode : {DisplayMode::kTerminalOrPlain, DisplayMode::kJson}) {
    output_.isBroken = false;
    output_.text.clear();
    const auto display = Make(mode);
    display->Stop("user");
    EXPECT_FALSE(display->OutputBroken());
    output_.isBroken = true;
    display->Stop("force");
    EXPECT_TRUE(display->OutputBroken());
    output_.isBroken = false;
    const std::string before = output_.text;
    display->Stop("force");
    EXPECT_EQ(output_.text, before);
  }
}

TEST_F(RunDisplayTest, QuietSaysNothingOfAWholeExport) {
  const auto display = Make(DisplayMode::kQuiet);
  display->Start({});
  display->Update(InPhase("documents"), 0);
  display->Lost({LossOf(1)});
  display->Message("Hello");
  display->End({ExitCode::kWhole, "", "out", std::nullopt, 3});
  EXPECT_EQ(output_.text + errors_.text, "");
}

TEST_F(RunDisplayTest, QuietSaysWhatWentWrong) {
  const auto display = Make(DisplayMode::kQuiet);
  display->Error("It failed.");
  display->End({ExitCode::kIncomplete, "It broke off.", "out", std::nullopt, 3});
  EXPECT_EQ(errors_.text,
            "larkspan-console: It failed.\nlarkspan-console: Incomplete: It broke off.\n");
  EXPECT_EQ(output_.text, "");
}

}  // namespace
}  // namespace larkspan::console
