// --resume: an export that was cut off goes on behind the last finished note.
#include <filesystem>

#include "tests/console/system/ExportTest.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::OutputTree;

constexpr char kThirdNoteHangs[] =
    R"([{"entry": "DXLExportNote", "note": "0000090A", "action": "hang"}])";
constexpr char kTwoForms[] =
    R"({"notes": [{"id": "00000202", "class": "form",
                   "items": [{"name": "$Body", "richText": ["one"]}]},
                  {"id": "00000206", "class": "form",
                   "items": [{"name": "$Body", "richText": ["two"]}]}]})";

class ExportResumeTest : public ExportTest {
 protected:
  // Exports until that file is there, and ends the console program by force.
  void CutOff(const std::string& faults, const std::wstring& awaited, const Words& more = {}) {
    run_.ChangeFaults(faults);
    const auto process = StartExport(more);
    AwaitFile(awaited);
    process->EndByForce();
    process->AwaitNothingLeft();
  }

  // In the third of five notes.
  void CutOffInTheThirdNote(const Words& more = {}) {
    run_.AddDatabase(database_, notes_);
    run_.SetFaults("[]");
    run_.ChangeFaults(kThirdNoteHangs);
    const auto process = StartExport(more);
    AwaitFile(out_ + L"\\data\\00000906.dxl");
    // The note has its line when it is open.
    const auto isOpen = [this] { return Holds(ReadIfThere(L"unidindex.txt"), "0000090A,"); };
    EXPECT_TRUE(AwaitCondition(isOpen));
    process->EndByForce();
    process->AwaitNothingLeft();
    EXPECT_TRUE(Exists(out_ + L"\\marker.txt"));
    run_.ChangeFaults("[]");
  }

  ConsoleEnd Resume(Words more = {}) const {
    more.push_back(L"--resume");
    return Export(more);
  }

  void ExpectLikeAClean(const std::string& database) const {
    EXPECT_EQ(testing::DescribeDifferences(CleanTree(database), NotesTree()), "");
  }

  const std::string notes_ = DocumentsJson(5);
};

TEST_F(ExportResumeTest, GoesOnInTheNoteAtWhichItWasCutOff) {
  CutOffInTheThirdNote();
  EXPECT_EQ(Outcome().at("state"), "running");
  const std::string started = Outcome().at("started");
  const ConsoleEnd end = Resume();
  EXPECT_EQ(end.code, 0u) << end.output;
  ExpectLikeAClean(notes_);
  const Json outcome = Outcome();
  EXPECT_EQ(outcome.at("state"), "ended");
  EXPECT_EQ(outcome.at("started"), started);
  ASSERT_EQ(outcome.at("resumed").size(), 1u);
  EXPECT_EQ(outcome.at("resumed").at(0).at("triedAgain"), "0000090A");
  EXPECT_EQ(outcome.at("progress").at("documentsDone"), 5);
  EXPECT_EQ(outcome.at("account").at("notes").at("exported"), 5);
}

TEST_F(ExportResumeTest, ANoteAtWhichItIsCutOffTwiceIsLost) {
  CutOffInTheThirdNote();
  run_.ChangeFaults(kThirdNoteHangs);
  {
    const auto process = StartExport({L"--resume", L"--json"});
    // While a folder is taken up nobody may hold its outcome.json.
    process->AwaitOutput(R"("kind":"phase")");
    // The marker and the line that the first run left are gone by then.
    AwaitOutcome(out_, [](const Json& outcome) { return outcome.at("resumed").size() == 1; });
    const auto isOpen = [this] { return Holds(ReadIfThere(L"unidindex.txt"), "0000090A,"); };
    EXPECT_TRUE(AwaitCondition(isOpen));
    process->EndByForce();
    process->AwaitNothingLeft();
  }
  const ConsoleEnd end = Resume();
  EXPECT_EQ(end.code, 3u) << end.output;
  EXPECT_EQ(FilesIn("data"), (Lines{"data/00000902.dxl", "data/00000906.dxl", "data/0000090E.dxl",
                                    "data/00000912.dxl"}));
  EXPECT_TRUE(Holds(Log(), "Major: Incomplete run detected for note id 0000090A"));
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 1u);
  EXPECT_EQ(losses[0].at("id"), "0000090A");
  EXPECT_EQ(losses[0].at("stage"), "crash");
}

TEST_F(ExportResumeTest, ARunThatWasCutOffAmongItsViewsBeginsAnew) {
  database_ = L"sample.nsf";
  run_.SetFaults("[]");
  CutOff(R"([{"entry": "NIFOpenCollection", "note": "00000136", "action": "hang"}])",
         out_ + L"\\views\\00000132.xml");
  run_.ChangeFaults("[]");
  const ConsoleEnd end = Resume();
  EXPECT_EQ(end.code, 0u) << end.output;
  testing::ExportRun clean;
  clean.Export(database_, {L"-archive"});
  EXPECT_EQ(testing::DescribeDifferences(NotesTreeOf(clean.output()), NotesTree()), "");
}

TEST_F(ExportResumeTest, WithAtomicTheLastAttemptIsTakenUpAndPlaced) {
  run_.AddDatabase(database_, notes_);
  run_.SetFaults("[]");
  const std::wstring attempt = out_ + L".attempt-1";
  CutOff(kThirdNoteHangs, attempt + L"\\data\\00000906.dxl", {L"--atomic"});
  run_.ChangeFaults("[]");
  const ConsoleEnd end = Resume({L"--atomic"});
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_FALSE(Exists(attempt));
  ExpectLikeAClean(notes_);
}

TEST_F(ExportResumeTest, WhereThereIsNothingToGoOnWithTheExportBegins) {
  run_.AddDatabase(database_, notes_);
  EXPECT_EQ(Resume().code, 0u);
  ExpectLikeAClean(notes_);
  EXPECT_TRUE(Outcome().at("resumed").empty());
}

TEST_F(ExportResumeTest, WithAtomicTooTheExportBegins) {
  run_.AddDatabase(database_, notes_);
  EXPECT_EQ(Resume({L"--atomic"}).code, 0u);
  ExpectLikeAClean(notes_);
}

TEST_F(ExportResumeTest, AFinishedExportIsLeftAsItIs) {
  run_.AddDatabase(database_, DocumentsJson(2, testing::FaultsMember(
                                                   R"({"entry": "NSFNoteOpen", "status": 546,
                                                       "note": "00000902"})")));
  EXPECT_EQ(Export().code, 3u);
  const OutputTree before = testing::ReadOutputTree(out_);
  const ConsoleEnd end = Resume();
  EXPECT_EQ(end.code, 3u);
  EXPECT_TRUE(Holds(end.output, "finished before")) << end.output;
  EXPECT_EQ(testing::DescribeDifferences(before, testing::ReadOutputTree(out_)), "");
}

TEST_F(ExportResumeTest, AnotherDatabaseFormOrServerCouldNotRun) {
  CutOffInTheThirdNote();
  const OutputTree before = testing::ReadOutputTree(out_);
  for (const Words& more : {Words{L"--design-only"}, Words{L"--server", L"Garden"}}) {
    const ConsoleEnd end = Resume(more);
    EXPECT_EQ(end.code, 2u);
    EXPECT_TRUE(Holds(end.errors, "is of another database or form")) << end.errors;
  }
  database_ = L"y.nsf";
  EXPECT_EQ(Resume().code, 2u);
  EXPECT_EQ(testing::DescribeDifferences(before, testing::ReadOutputTree(out_)), "");
}

TEST_F(ExportResumeTest, AFolderOfSomethingElseCouldNotRun) {
  run_.AddDatabase(database_, notes_);
  MakeFolder(out_);
  WriteBytes(out_ + L"\\mine.txt", "mine");
  const ConsoleEnd end = Resume();
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.errors, "has no outcome.json to go on from")) << end.errors;
  EXPECT_EQ(testing::ReadOutputTree(out_), (OutputTree{{"mine.txt", "mine"}}));
}

TEST_F(ExportResumeTest, AnOutcomeThatCannotBeReadCouldNotRun) {
  CutOffInTheThirdNote();
  WriteBytes(out_ + L"\\outcome.json", "{");
  EXPECT_EQ(Resume().code, 2u);
}

TEST_F(ExportResumeTest, TheFolderAloneIsEnough) {
  CutOffInTheThirdNote({L"--full-access", L"--no-views"});
  const ConsoleEnd end = Run({L"export", L"--resume", L"--out", out_});
  EXPECT_EQ(end.code, 0u) << end.output;
  ExpectLikeAClean(notes_);
  EXPECT_EQ(Outcome().at("fullAccess"), true);
  EXPECT_EQ(Outcome().at("views"), false);
}

TEST_F(ExportResumeTest, ARunThatWasStoppedGoesOn) {
  run_.AddDatabase(database_, notes_);
  run_.SetFaults(R"([{"entry": "DXLExportNote", "note": "0000090A", "wait": 6000}])");
  {
    const auto process = StartExport({L"--stop-on-stdin-end"});
    AwaitFile(out_ + L"\\data\\00000906.dxl");
    process->EndInput();
    EXPECT_EQ(process->WaitForEnd().code, 4u);
  }
  const ConsoleEnd end = Resume();
  EXPECT_EQ(end.code, 0u) << end.output;
  ExpectLikeAClean(notes_);
  EXPECT_EQ(Outcome().count("stop"), 0u);
  EXPECT_EQ(Outcome().at("resumed").at(0).count("triedAgain"), 0u);
}

TEST_F(ExportResumeTest, WhatWasLostBeforeStaysLostAndIsCountedOnce) {
  run_.AddDatabase(database_, notes_);
  run_.SetFaults("[]");
  CutOff(R"([{"entry": "NSFNoteOpen", "note": "00000902", "status": 546},
             {"entry": "DXLExportNote", "note": "0000090A", "action": "hang"}])",
         out_ + L"\\data\\00000906.dxl");
  run_.ChangeFaults("[]");
  const ConsoleEnd end = Resume();
  EXPECT_EQ(end.code, 3u) << end.output;
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 1u);
  EXPECT_EQ(losses[0].at("id"), "00000902");
}

TEST_F(ExportResumeTest, ADesignNoteThatLacksItsRawCopyIsExportedAgain) {
  run_.AddDatabase(database_, kTwoForms);
  run_.SetFaults("[]");
  CutOff(R"([{"entry": "DXLExportNote", "note": "00000206", "call": 2, "action": "hang"}])",
         out_ + L"\\design\\00000206.dxl");
  run_.ChangeFaults("[]");
  const ConsoleEnd end = Resume();
  EXPECT_EQ(end.code, 0u) << end.output;
  ExpectLikeAClean(kTwoForms);
}

TEST_F(ExportResumeTest, ADesignNoteIsExportedAgainAlsoWhenThatIsCutOffBeforeIt) {
  run_.AddDatabase(database_, kTwoForms);
  run_.SetFaults("[]");
  for (const Words& words : {Words{L"--resume"}, Words{L"--resume", L"--workers", L"3"}}) {
    std::filesystem::remove_all(out_);
    CutOff(R"([{"entry": "DXLExportNote", "note": "00000206", "call": 2, "action": "hang"}])",
           out_ + L"\\design\\00000206.dxl");
    CutOff(R"([{"entry": "NotesInitExtended", "action": "hang"}])", out_ + L"\\00000206.dxl.first",
           words);
    run_.ChangeFaults("[]");
    const ConsoleEnd end = Export(words);
    EXPECT_EQ(end.code, 0u) << end.output;
    ExpectLikeAClean(kTwoForms);
  }
}

TEST_F(ExportResumeTest, APlainExportGoesOnToo) {
  run_.AddDatabase(database_, kTwoForms);
  run_.SetFaults("[]");
  CutOff(R"([{"entry": "DXLExportNote", "note": "00000206", "action": "hang"}])",
         out_ + L"\\00000202.dxl", {L"--design-only"});
  run_.ChangeFaults("[]");
  const ConsoleEnd end = Resume({L"--design-only"});
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_TRUE(Exists(out_ + L"\\00000206.dxl"));
}

// From here on the console program supervises the workers itself.
TEST_F(ExportResumeTest, CrashesAndHangsBehindCostTheirNotes) {
  CutOffInTheThirdNote();
  run_.ChangeFaults(R"([{"entry": "DXLExportNote", "note": "0000090E", "action": "exit"},
                        {"entry": "DXLExportNote", "note": "00000912", "action": "hang"}])");
  const ConsoleEnd end = Resume({L"--stall", kShortStall});
  EXPECT_EQ(end.code, 3u) << end.output;
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 2u);
  EXPECT_EQ(losses[0].at("stage"), "crash");
  EXPECT_EQ(losses[1].at("stage"), "stall");
  EXPECT_EQ(FilesIn("data").size(), 3u);
}

TEST_F(ExportResumeTest, ARunThatWasTakenUpCanBeStopped) {
  CutOffInTheThirdNote();
  run_.ChangeFaults(R"([{"entry": "DXLExportNote", "note": "0000090E", "wait": 6000}])");
  const auto process = StartExport({L"--resume", L"--stop-on-stdin-end"});
  AwaitFile(out_ + L"\\data\\0000090A.dxl");
  process->EndInput();
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 4u) << end.output;
  EXPECT_EQ(FilesIn("data").size(), 4u);
}

TEST_F(ExportResumeTest, AnIdIsWorkedWithAgain) {
  database_ = L"sealed.nsf";
  const std::wstring passwordFile = run_.folder() + L"\\password";
  WriteBytes(passwordFile, "Rittersporn");
  const Words id = {L"--id-file", L"ids\\imke.id", L"--password-file", passwordFile};
  run_.SetFaults("[]");
  CutOff(R"([{"entry": "DXLExportNote", "note": "00000906", "action": "hang"}])",
         out_ + L"\\data\\00000902.dxl", id);
  run_.ChangeFaults("[]");
  const ConsoleEnd end = Resume({L"--password-file", passwordFile});
  EXPECT_EQ(end.code, 3u) << end.output << end.errors;
  EXPECT_EQ(FilesIn("data").size(), 3u);
}

}  // namespace
}  // namespace larkspan::console
