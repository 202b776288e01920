// A batch of thirty databases: whole, and ended in three ways and gone on with.
#include <filesystem>

#include "tests/console/system/BatchTest.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan::console {
namespace {

class BatchOfThirtyTest : public ThirtyDatabasesTest {
 protected:
  // Goes on with a batch that was ended, and holds that nothing was done twice.
  void ExpectToGoOn() {
    const std::map<std::string, std::string> before = Placed();
    const ConsoleEnd end = BatchThirty({L"--jobs", L"3", L"--json"});
    EXPECT_EQ(end.code, 2u) << end.errors;
    EXPECT_EQ(States(), ExpectedStates());
    const std::multiset<std::string> begun = PathsOf(EventsIn(end.output), "exportStart");
    EXPECT_EQ(begun.size() + before.size(), 30u);
    const std::map<std::string, std::string> after = Placed();
    for (const auto& [path, outcome] : before) {
      EXPECT_FALSE(begun.contains(path)) << path;
      EXPECT_EQ(after.at(path), outcome) << path;
    }
  }

  // Of clean databases, since the other ones differ from run to run in what was tried again.
  void ExpectCleanTrees() const {
    testing::OutputTree clean = CleanTree(testing::DocumentsJson(3));
    // It tells the path of the database.
    EXPECT_EQ(clean.erase("db.dxl"), 1u);
    for (const auto& [path, state] : ExpectedStates()) {
      if (state != "whole") continue;
      testing::OutputTree tree = NotesTreeOf(FolderOf(path));
      EXPECT_EQ(tree.erase("db.dxl"), 1u) << path;
      ASSERT_EQ(testing::DescribeDifferences(clean, tree), "") << path;
    }
  }
};

TEST_F(BatchOfThirtyTest, OneAtATime) {
  const ConsoleEnd end = BatchThirty({L"--json"});
  EXPECT_EQ(end.code, 2u) << end.errors;
  EXPECT_EQ(States(), ExpectedStates());
  const std::vector<Json> events = EventsIn(end.output);
  EXPECT_EQ(MostAtOnce(events), 1u);
  EXPECT_EQ(PathsOf(events, "exportEnd").size(), 30u);
  EXPECT_EQ(events.back().at("counts").at("whole"), 22);
  EXPECT_EQ(events.back().at("counts").at("losses"), 5);
  EXPECT_EQ(events.back().at("counts").at("failed"), 3);
  EXPECT_TRUE(Holds(Summary().at("missing-1.nsf").at("reason"), "File does not exist"));
  EXPECT_TRUE(Holds(Summary().at("locked-1.nsf").at("reason"), "not authorized"));
  ExpectCleanTrees();
}

TEST_F(BatchOfThirtyTest, ThreeAtATimeAndOnceMore) {
  const ConsoleEnd end = BatchThirty({L"--jobs", L"3", L"--json"});
  EXPECT_EQ(end.code, 2u) << end.errors;
  EXPECT_EQ(States(), ExpectedStates());
  EXPECT_EQ(MostAtOnce(EventsIn(end.output)), 3u);
  ExpectCleanTrees();
  EXPECT_EQ(Placed().size(), 27u);
  ExpectToGoOn();
}

TEST_F(BatchOfThirtyTest, StoppedItGoesOn) {
  const auto process = Start(
      BatchWords({L"--jobs", L"3", L"--stall", kShortStall, L"--json", L"--stop-on-stdin-end"}));
  AwaitPlaced(8);
  process->EndInput();
  const ConsoleEnd end = process->WaitForEnd();
  process->AwaitNothingLeft();
  EXPECT_EQ(end.code, 4u) << end.errors;
  EXPECT_GE(Placed().size(), 8u);
  EXPECT_LT(Placed().size(), 20u);
  const Json last = EventsIn(end.output).back();
  EXPECT_EQ(last.at("kind"), "batchEnd");
  EXPECT_EQ(last.at("reason"), "it was stopped");
  EXPECT_GT(last.at("counts").at("waiting"), 5);
  EXPECT_EQ(Summary().size(), 30u);
  ExpectToGoOn();
  ExpectCleanTrees();
}

TEST_F(BatchOfThirtyTest, EndedByForceItGoesOn) {
  {
    const auto process = Start(BatchWords({L"--jobs", L"3", L"--stall", kShortStall}));
    AwaitPlaced(8);
    process->EndByForce();
    process->AwaitNothingLeft();
  }
  EXPECT_LT(Placed().size(), 20u);
  EXPECT_EQ(Summary().size(), 30u);
  ExpectToGoOn();
  ExpectCleanTrees();
}

TEST_F(BatchOfThirtyTest, OnAFullDiskItGoesOnWhenThereIsRoom) {
  const std::filesystem::path to = run_.folder() + L"\\programs";
  std::filesystem::create_directory(to);
  for (const wchar_t* file : {L"larkspan-console.exe", L"nnotes.dll"})
    std::filesystem::copy(std::filesystem::path(programFolder_) / file, to / file);
  std::filesystem::copy(std::filesystem::path(programFolder_) / L"larkspan_faulty.exe",
                        to / L"larkspan.exe");
  programFolder_ = to.wstring();
  {
    const ScopedEnvironmentVariable variable(kFileFaultsVariable, L"write temp.tmp 3- diskFull");
    const ConsoleEnd end = BatchThirty({L"--jobs", L"3", L"--max-losses", L"0"});
    EXPECT_EQ(end.code, 5u) << end.errors;
  }
  EXPECT_EQ(States().at("clean-10.nsf"), "incomplete");
  EXPECT_EQ(States().at("missing-1.nsf"), "failed");
  ExpectToGoOn();
  ExpectCleanTrees();
}

}  // namespace
}  // namespace larkspan::console
