#include "console/follow/RunState.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace larkspan::console {
namespace {

using Step = RunState::Step;

// Takes lines as a worker writes them, without "PROGRESS: ".
Step TakeLinesInto(RunState& state, const std::vector<std::string>& lines) {
  Step last = Step::kGoesOn;
  for (const std::string& line : lines) {
    last = state.Take(ParseProgressLine("PROGRESS: " + line).value());
  }
  return last;
}

struct StateAfterLines {
  const char* name;
  std::vector<std::string> lines;
  Step step;
  Phase phase;
  std::uint32_t viewsDone;
  std::uint32_t documentsDone;
  bool hasBegunNotes;
};

const std::vector<std::string> kToTheViews = {"Opening 'x' on ''", "Exporting database properties",
                                              "VIEWCOUNT: 2"};
const std::vector<std::string> kToTheNotes = {"Opening 'x' on ''", "Exporting database properties",
                                              "VIEWCOUNT: 2",      "VIEW: 0000012E",
                                              "VIEW: 00000132",    "Scanning documents",
                                              "DOCCOUNT: 3"};

std::vector<std::string> LinesBehind(std::vector<std::string> first,
                                     const std::vector<std::string>& more) {
  first.insert(first.end(), more.begin(), more.end());
  return first;
}

const StateAfterLines kStates[] = {
    {"nothing", {}, Step::kGoesOn, Phase::kStarting, 0, 0, false},
    {"opening", {"Opening 'x' on ''"}, Step::kNewPhase, Phase::kOpening, 0, 0, false},
    {"views to come", kToTheViews, Step::kNewPhase, Phase::kViews, 0, 0, false},
    {"the first view", LinesBehind(kToTheViews, {"VIEW: 0000012E"}), Step::kGoesOn, Phase::kViews,
     0, 0, false},
    {"the second view", LinesBehind(kToTheViews, {"VIEW: 0000012E", "VIEW: 00000132"}),
     Step::kGoesOn, Phase::kViews, 1, 0, false},
    {"notes to come", kToTheNotes, Step::kNewPhase, Phase::kDocuments, 2, 0, false},
    {"the first note", LinesBehind(kToTheNotes, {"DOCUMENT: 00000902"}), Step::kGoesOn,
     Phase::kDocuments, 2, 0, true},
    {"the third note",
     LinesBehind(kToTheNotes, {"DOCUMENT: 00000902", "DOCUMENT: 00000906", "DOCUMENT: 0000090A"}),
     Step::kGoesOn, Phase::kDocuments, 2, 2, true},
    {"a new worker", LinesBehind(kToTheNotes, {"DOCUMENT: 00000902", "Opening 'x' on ''"}),
     Step::kNewWorker, Phase::kDocuments, 2, 0, true},
    {"a new worker's note",
     LinesBehind(kToTheNotes, {"DOCUMENT: 00000902", "Opening 'x' on ''", "DOCUMENT: 00000906"}),
     Step::kGoesOn, Phase::kDocuments, 2, 1, true},
    {"a run without views",
     {"Opening 'x' on ''", "Exporting database properties", "Scanning documents"},
     Step::kNewPhase,
     Phase::kScanning,
     0,
     0,
     false},
};

TEST(RunStateTest, FollowsTheLines) {
  for (const StateAfterLines& row : kStates) {
    RunState state;
    EXPECT_EQ(TakeLinesInto(state, row.lines), row.step) << row.name;
    EXPECT_EQ(state.phase(), row.phase) << row.name;
    EXPECT_EQ(state.viewsDone(), row.viewsDone) << row.name;
    EXPECT_EQ(state.documentsDone(), row.documentsDone) << row.name;
    EXPECT_EQ(state.HasBegunNotes(), row.hasBegunNotes) << row.name;
  }
}

TEST(RunStateTest, CountsAreUnknownUntilTheyAreTold) {
  RunState state;
  EXPECT_FALSE(state.views());
  EXPECT_FALSE(state.documents());
  TakeLinesInto(state, kToTheNotes);
  EXPECT_EQ(state.views(), std::optional<std::uint32_t>(2));
  EXPECT_EQ(state.documents(), std::optional<std::uint32_t>(3));
}

TEST(RunStateTest, TheBegunViewsAndTheLastNoteAreKnown) {
  RunState state;
  EXPECT_TRUE(state.begunViews().empty());
  EXPECT_FALSE(state.lastNote());
  TakeLinesInto(state, LinesBehind(kToTheNotes, {"DOCUMENT: 00000902"}));
  EXPECT_EQ(state.begunViews(), (std::vector<std::uint32_t>{0x12E, 0x132}));
  EXPECT_EQ(state.lastNote(), std::optional<std::uint32_t>(0x902));
}

TEST(RunStateTest, TheLastNoteIsDoneWhenTheExporterHasEnded) {
  RunState state;
  TakeLinesInto(state, LinesBehind(kToTheNotes, {"DOCUMENT: 00000902", "DOCUMENT: 00000906"}));
  EXPECT_EQ(state.documentsDone(), 1u);
  state.TakeEnd();
  EXPECT_EQ(state.documentsDone(), 2u);
}

TEST(RunStateTest, ARunThatIsTakenUpGoesOnCounting) {
  RunState state;
  state.GoOnBehind(5, 8);
  EXPECT_EQ(state.documents(), std::optional<std::uint32_t>(8));
  EXPECT_EQ(state.documentsDone(), 5u);
  TakeLinesInto(state, {"Opening 'x' on ''"});
  EXPECT_EQ(state.documentsDone(), 5u);
  TakeLinesInto(state, {"DOCUMENT: 00000916"});
  EXPECT_EQ(state.documentsDone(), 5u);
  TakeLinesInto(state, {"DOCUMENT: 0000091A"});
  EXPECT_EQ(state.documentsDone(), 6u);
}

TEST(RunStateTest, APlainFolderTellsWhatItHolds) {
  RunState state;
  EXPECT_FALSE(state.TakeFiles(3, 0));
  EXPECT_EQ(state.phase(), Phase::kDocuments);
  EXPECT_EQ(state.documents(), std::optional<std::uint32_t>(3));
  EXPECT_FALSE(state.HasBegunNotes());
  EXPECT_TRUE(state.TakeFiles(3, 2));
  EXPECT_FALSE(state.TakeFiles(3, 2));
  EXPECT_EQ(state.documentsDone(), 2u);
  EXPECT_TRUE(state.HasBegunNotes());
}

}  // namespace
}  // namespace larkspan::console
