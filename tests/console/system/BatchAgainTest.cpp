// The same batch again: what an earlier run has left, and options and names that have changed.
#include <filesystem>

#include "base/Utf8.h"
#include "tests/console/system/BatchTest.h"

namespace larkspan::console {
namespace {

class BatchAgainTest : public BatchTest {
 protected:
  BatchAgainTest() {
    run_.AddDatabase(L"a.nsf", testing::DocumentsJson(2));
    List({"a.nsf"});
  }

  // Makes the folder of the export by hand.
  void MakeOutcome(const std::wstring& folder, const Json& changes) {
    EXPECT_EQ(Batch().code, 0u);
    Json outcome = OutcomeOf(FolderOf("a.nsf"));
    outcome.update(changes);
    std::filesystem::rename(FolderOf("a.nsf"), root_ + L"\\aside");
    std::filesystem::rename(root_ + L"\\aside", folder);
    WriteBytes(folder + L"\\outcome.json", outcome.dump());
  }

  void ExpectInTheWay(const std::string& reason, const Words& more = {}) {
    EXPECT_EQ(Batch(more).code, 2u);
    EXPECT_EQ(States().at("a.nsf"), "failed");
    EXPECT_TRUE(Holds(Summary().at("a.nsf").at("reason"), reason))
        << Summary().at("a.nsf").at("reason");
  }
};

TEST_F(BatchAgainTest, WhatCouldNotRunIsTriedWithTheOptionsOfNow) {
  run_.AddDatabase(L"a.nsf", testing::DocumentsJson(2, R"("access": "fullAccessOnly", )"));
  EXPECT_EQ(Batch().code, 2u);
  EXPECT_EQ(Batch().code, 2u);
  EXPECT_FALSE(std::filesystem::exists(FolderOf("a.nsf") + L".attempt-2"));
  EXPECT_EQ(Batch({L"--full-access"}).code, 0u);
  EXPECT_EQ(OutcomeOf(FolderOf("a.nsf")).at("fullAccess"), true);
}

TEST_F(BatchAgainTest, WhatWasGivenUpIsExportedAnew) {
  const std::string fault = R"({"entry": "NSFNoteOpen", "from": 3, "status": 585, "wait": 400})";
  run_.AddDatabase(L"a.nsf", testing::DocumentsJson(40, testing::FaultsMember(fault)));
  EXPECT_EQ(Batch({L"--give-up", L"3"}).code, 5u);
  run_.AddDatabase(L"a.nsf", testing::DocumentsJson(40));
  EXPECT_EQ(Batch({L"--give-up", L"3"}).code, 0u);
  EXPECT_EQ(Summary().at("a.nsf").at("exported"), "40");
}

TEST_F(BatchAgainTest, AnotherFormIsNotTheExportThatIsWanted) {
  EXPECT_EQ(Batch().code, 0u);
  ExpectInTheWay("holds an export of it in another form", {L"--design-only"});
  EXPECT_EQ(OutcomeOf(FolderOf("a.nsf")).at("archive"), true);
}

TEST_F(BatchAgainTest, AnExportThatIsNoGoodIsNotFinished) {
  MakeOutcome(FolderOf("a.nsf"), {{"exitCode", 4}});
  ExpectInTheWay("has not come to a good end");
}

TEST_F(BatchAgainTest, AHalfSealedExportIsNeitherFinishedNorExportedAgain) {
  EXPECT_EQ(Batch().code, 0u);
  std::filesystem::create_directory(FolderOf("a.nsf") + L"\\data.new");
  std::filesystem::rename(FolderOf("a.nsf") + L"\\data", FolderOf("a.nsf") + L"\\data.new\\data");
  ExpectInTheWay("is half sealed");
  std::filesystem::rename(FolderOf("a.nsf") + L"\\outcome.json",
                          FolderOf("a.nsf") + L"\\data.new\\outcome.json");
  ExpectInTheWay("is half sealed");
  EXPECT_EQ(Run({L"seal", FolderOf("a.nsf")}).code, 0u);
  EXPECT_EQ(Batch().code, 0u);
}

TEST_F(BatchAgainTest, AFileInThePlaceOfTheFolderIsToldAtOnce) {
  std::filesystem::create_directories(root_ + L"\\local");
  WriteBytes(FolderOf("a.nsf"), "mine");
  EXPECT_EQ(Batch().code, 0u);
  EXPECT_EQ(ReadBytes(FolderOf("a.nsf")), "mine");
  EXPECT_NE(Summary().at("a.nsf").at("folder"), WideToUtf8(FolderOf("a.nsf")));
}

// What lies between a night and the next one is no work.
TEST_F(BatchAgainTest, TheSecondsAreThoseOfTheLastRun) {
  MakeOutcome(FolderOf("a.nsf") + L".attempt-1",
              {{"started", "2001-01-01T00:00:00Z"}, {"state", "running"}});
  EXPECT_EQ(Batch().code, 0u);
  EXPECT_EQ(Summary().at("a.nsf").at("started"), "2001-01-01T00:00:00Z");
  EXPECT_LT(std::stoi(Summary().at("a.nsf").at("seconds")), 1'000'000);
}

using BatchOfASampleTest = BatchTest;

TEST_F(BatchOfASampleTest, AServerInAnotherCaseIsTheSame) {
  List({"Garden!!bulbs.nsf"});
  EXPECT_EQ(Batch().code, 0u);
  List({"GARDEN!!bulbs.nsf"});
  const ConsoleEnd end = Batch({L"--json"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_TRUE(PathsOf(EventsIn(end.output), "exportStart").empty());
}

}  // namespace
}  // namespace larkspan::console
