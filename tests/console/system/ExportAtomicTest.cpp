// --atomic and --confirm: an export gets its name when all of it is accounted for.
#include <filesystem>

#include "tests/console/system/ExportTest.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::FaultsMember;
using testing::OutputTree;

class ExportAtomicTest : public ExportTest {
 protected:
  void AddNotes(int count, const std::string& faults = "") {
    run_.AddDatabase(database_, DocumentsJson(count, faults.empty() ? "" : FaultsMember(faults)));
  }

  std::wstring Attempt(int number) const { return out_ + L".attempt-" + std::to_wstring(number); }

  ConsoleEnd ExportAtomic(Words more = {}) const {
    more.push_back(L"--atomic");
    return Export(more);
  }

  // Starts one that waits for its word.
  std::unique_ptr<ConsoleProcess> StartToReady() {
    AddNotes(2);
    auto process = StartExport({L"--atomic", L"--confirm", L"--json"});
    process->AwaitOutput("\"kind\":\"ready\"");
    EXPECT_TRUE(Exists(Attempt(1)));
    EXPECT_FALSE(Exists(out_));
    return process;
  }

  void ExpectLeft(const ConsoleEnd& end) const {
    EXPECT_EQ(end.code, 4u) << end.output;
    EXPECT_FALSE(Exists(out_));
    EXPECT_EQ(OutcomeOf(Attempt(1)).at("exitCode"), 4);
    EXPECT_NE(OutcomeOf(Attempt(1)).at("reason"), "");
  }
};

TEST_F(ExportAtomicTest, AGoodExportGetsItsName) {
  const std::string database = DocumentsJson(2);
  run_.AddDatabase(database_, database);
  const ConsoleEnd end = ExportAtomic({L"--json"});
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_FALSE(Exists(Attempt(1)));
  EXPECT_EQ(testing::DescribeDifferences(CleanTree(database), NotesTree()), "");
  EXPECT_EQ(Outcome().at("state"), "ended");
  EXPECT_EQ(Outcome().at("exitCode"), 0);
  EXPECT_TRUE(EventsIn(end.output).back().at("out").get<std::string>().ends_with("出力"));
}

TEST_F(ExportAtomicTest, LossesThatAreToldAreGoodEnough) {
  AddNotes(3, R"({"entry": "NSFNoteOpen", "note": "00000906", "status": 546})");
  EXPECT_EQ(ExportAtomic().code, 3u);
  EXPECT_EQ(Outcome().at("exitCode"), 3);
}

TEST_F(ExportAtomicTest, MoreLossesThanAllowedGetNoName) {
  AddNotes(3, R"({"entry": "NSFNoteOpen", "note": "00000906", "status": 546})");
  EXPECT_EQ(ExportAtomic({L"--max-losses", L"0"}).code, 5u);
  EXPECT_FALSE(Exists(out_));
  EXPECT_EQ(OutcomeOf(Attempt(1)).at("reason"), "more is lost than --max-losses allows");
}

TEST_F(ExportAtomicTest, AnEmptyFolderGivesWay) {
  AddNotes(1);
  MakeFolder(out_);
  EXPECT_EQ(ExportAtomic().code, 0u);
  EXPECT_EQ(FilesIn("data").size(), 1u);
}

TEST_F(ExportAtomicTest, AFailedAttemptStaysWithItsReasonAndTheNextHasTheNextNumber) {
  AddNotes(1);
  database_ = L"unbekannt.nsf";
  EXPECT_EQ(ExportAtomic().code, 2u);
  EXPECT_TRUE(Holds(OutcomeOf(Attempt(1)).at("reason"), "Error opening database"));
  EXPECT_EQ(ExportAtomic().code, 2u);
  EXPECT_TRUE(Exists(Attempt(2)));
  EXPECT_FALSE(Exists(out_));
  database_ = L"x.nsf";
  EXPECT_EQ(ExportAtomic().code, 0u);
  EXPECT_TRUE(Exists(Attempt(1)));
  EXPECT_FALSE(Exists(Attempt(3)));
}

TEST_F(ExportAtomicTest, AFinishedExportIsNotMadeAgain) {
  AddNotes(3, R"({"entry": "NSFNoteOpen", "note": "00000906", "status": 546})");
  EXPECT_EQ(ExportAtomic().code, 3u);
  const OutputTree before = testing::ReadOutputTree(out_);
  const ConsoleEnd end = ExportAtomic();
  EXPECT_EQ(end.code, 3u);
  EXPECT_TRUE(Holds(end.output, "finished before")) << end.output;
  EXPECT_EQ(testing::DescribeDifferences(before, testing::ReadOutputTree(out_)), "");
  EXPECT_FALSE(Exists(Attempt(1)));
}

TEST_F(ExportAtomicTest, AnExportOfSomethingElseIsNotTakenForThis) {
  AddNotes(1);
  run_.AddDatabase(L"y.nsf", DocumentsJson(1));
  EXPECT_EQ(ExportAtomic().code, 0u);
  EXPECT_EQ(ExportAtomic({L"--design-only"}).code, 2u);
  database_ = L"y.nsf";
  const ConsoleEnd end = ExportAtomic();
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.output, "holds something that is not this export")) << end.output;
}

TEST_F(ExportAtomicTest, AnythingElseUnderTheNameCouldNotRun) {
  AddNotes(1);
  MakeFolder(out_);
  WriteBytes(out_ + L"\\mine.txt", "mine");
  EXPECT_EQ(ExportAtomic().code, 2u);
  EXPECT_EQ(testing::ReadOutputTree(out_), (OutputTree{{"mine.txt", "mine"}}));
  EXPECT_FALSE(Exists(Attempt(1)));
}

TEST_F(ExportAtomicTest, AnExportThatIsStillRunningIsNotFinished) {
  AddNotes(1);
  EXPECT_EQ(ExportAtomic().code, 0u);
  std::string outcome = ReadBytes(out_ + L"\\outcome.json");
  outcome.replace(outcome.find("\"ended\""), 7, "\"running\"");
  WriteBytes(out_ + L"\\outcome.json", outcome);
  EXPECT_EQ(ExportAtomic().code, 2u);
}

TEST_F(ExportAtomicTest, WhatTakesTheNameMeanwhileStaysAndTheAttemptToo) {
  const auto process = StartToReady();
  MakeFolder(out_);
  WriteBytes(out_ + L"\\mine.txt", "mine");
  process->Write("place\n");
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 5u) << end.output;
  EXPECT_EQ(testing::ReadOutputTree(out_), (OutputTree{{"mine.txt", "mine"}}));
  EXPECT_EQ(OutcomeOf(Attempt(1)).at("exitCode"), 5);
  EXPECT_TRUE(Holds(OutcomeOf(Attempt(1)).at("reason"), "its name"));
}

TEST_F(ExportAtomicTest, AConfirmedExportGetsItsName) {
  const auto process = StartToReady();
  const Json ready = EventsOf(process->Output(), "ready").at(0);
  EXPECT_EQ(ready.at("exitCode"), 0);
  EXPECT_EQ(ready.at("counts").at("exported"), 2);
  process->Write("place\r\n");
  EXPECT_EQ(process->WaitForEnd().code, 0u);
  EXPECT_EQ(FilesIn("data").size(), 2u);
  EXPECT_FALSE(Exists(Attempt(1)));
}

TEST_F(ExportAtomicTest, OtherWordsAreWaitedThrough) {
  const auto process = StartToReady();
  process->Write("\nwhat?\nplaced\nplace\n");
  EXPECT_EQ(process->WaitForEnd().code, 0u);
}

TEST_F(ExportAtomicTest, AnExportThatIsToBeLeftKeepsItsAttempt) {
  const auto process = StartToReady();
  process->Write("leave\n");
  ExpectLeft(process->WaitForEnd());
}

TEST_F(ExportAtomicTest, TheEndOfInputLeavesTheAttempt) {
  const auto process = StartToReady();
  process->EndInput();
  ExpectLeft(process->WaitForEnd());
}

TEST_F(ExportAtomicTest, WhatWasLeftIsPlacedWhenItIsTakenUpAgain) {
  const auto process = StartToReady();
  process->Write("leave\n");
  ExpectLeft(process->WaitForEnd());
  EXPECT_EQ(ExportAtomic({L"--resume"}).code, 0u);
  EXPECT_EQ(FilesIn("data").size(), 2u);
  EXPECT_FALSE(Exists(Attempt(1)));
}

TEST_F(ExportAtomicTest, WhatWasLeftAndIsDamagedSinceGetsNoName) {
  AddNotes(2);
  ASSERT_EQ(Export().code, 0u);
  std::filesystem::rename(out_, Attempt(1));
  WriteBytes(Attempt(1) + L"\\data\\00000902.dxl", "other");
  const ConsoleEnd end = ExportAtomic({L"--resume"});
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(end.output + end.errors, "not accounted for: data/00000902.dxl")) << end.output;
  EXPECT_FALSE(Exists(out_));
}

TEST_F(ExportAtomicTest, ConfirmNeedsAtomic) {
  AddNotes(1);
  EXPECT_EQ(Export({L"--confirm"}).code, 1u);
  EXPECT_FALSE(Exists(out_));
}

TEST_F(ExportAtomicTest, AnExportThatIsNotGoodAsksForNoWord) {
  AddNotes(1);
  database_ = L"unbekannt.nsf";
  const ConsoleEnd end = ExportAtomic({L"--confirm", L"--json"});
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(EventsOf(end.output, "ready").empty());
}

}  // namespace
}  // namespace larkspan::console
