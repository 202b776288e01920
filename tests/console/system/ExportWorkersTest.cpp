// --workers: several workers export one database, and what they leave is what one leaves.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>

#include "base/PathLimits.h"
#include "console/text/Utf.h"
#include "tests/console/system/ExportWorkersTest.h"

namespace larkspan::console {
namespace {

using testing::DescribeDifferences;
using testing::DocumentsJson;
using testing::OutputTree;

TEST_F(ExportWorkersTest, CrashesInManySlicesAreThoseOfOneWorker) {
  AddNotes(120, {FaultAt(0, kCrash), FaultAt(7, kCrash), FaultAt(8, kCrash), FaultAt(40, kCrash),
                 FaultAt(41, R"("status": 546)"), FaultAt(119, kCrash)});
  const ConsoleEnd end = Export({L"--workers", L"3", L"--json"});
  EXPECT_EQ(end.code, 3u);
  ExpectLikeAlone(end);
  const std::vector<Json> restarts = EventsOf(end.output, "restart");
  EXPECT_EQ(restarts.size(), 5u);
  // The first note is begun by the worker that lists, if at all, which is one alone.
  std::map<Json, Json> workerOf;
  for (std::size_t i = 1; i < restarts.size(); ++i) {
    EXPECT_GE(restarts[i].at("worker"), 1);
    EXPECT_LE(restarts[i].at("worker"), 3);
    workerOf[restarts[i].at("note")] = restarts[i].at("worker");
  }
  for (const Json& lost : EventsOf(end.output, "lost")) {
    const auto worker = workerOf.find(lost.at("id"));
    if (worker == workerOf.end()) continue;
    EXPECT_EQ(lost.at("worker"), worker->second);
  }
  const std::vector<std::string> phases = {"opening",   "properties", "views",    "scanning",
                                           "documents", "joining",    "checking", "ended"};
  EXPECT_EQ(PhasesIn(end.output), phases);
}

TEST_F(ExportWorkersTest, SeveralAreAtWorkAtOnce) {
  AddNotes(60, {R"({"entry": "NSFNoteOpen", "wait": 60})"});
  const ConsoleEnd end = Export({L"--workers", L"3", L"--json"});
  EXPECT_EQ(end.code, 0u) << end.output;
  std::size_t most = 0;
  for (const Json& progress : EventsOf(end.output, "progress")) {
    if (!progress.contains("workers")) continue;
    most = std::max(most, progress.at("workers").size());
    for (const Json& worker : progress.at("workers")) EXPECT_LE(worker.at("worker"), 3);
  }
  EXPECT_EQ(most, 3u);
  EXPECT_EQ(Outcome().at("progress").at("documentsDone"), 60);
}

TEST_F(ExportWorkersTest, AHangCostsItsNoteAlone) {
  AddNotes(60, {FaultAt(20, kHang)});
  const ConsoleEnd end = Export({L"--workers", L"3", L"--stall", kShortStall});
  EXPECT_EQ(end.code, 3u) << end.output;
  ExpectLikeAlone(end, {L"--stall", kShortStall});
  EXPECT_EQ(Outcome().at("account").at("losses").at(0).at("stage"), "stall");
}

TEST_F(ExportWorkersTest, AStopKeepsWhatIsDoneAndResumeExportsNothingTwice) {
  const std::string wait = R"("wait": 6000)";
  AddNotesInKnownSlices(60, {FaultAt(5, wait), FaultAt(15, wait)});
  run_.SetFaults("[]");
  {
    const auto process = StartExport({L"--workers", L"3", L"--stop-on-stdin-end"});
    AwaitFile(out_ + L"\\parts\\0000092A\\data\\0000093A.dxl");
    process->EndInput();
    const ConsoleEnd end = process->WaitForEnd();
    process->AwaitNothingLeft();
    EXPECT_EQ(end.code, 4u) << end.output;
  }
  const Json account = Outcome().at("account");
  EXPECT_EQ(account.at("losses").size(), 0u);
  ASSERT_TRUE(HasParts());
  EXPECT_EQ(Run({L"verify", out_}).code, 5u);
  run_.AddDatabase(database_, DocumentsJson(60));
  ASSERT_FALSE(NotesInParts().empty());
  FailAt(NotesInParts());
  const ConsoleEnd end = Export({L"--resume"});
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_FALSE(HasParts());
  EXPECT_EQ(DescribeDifferences(CleanTree(DocumentsJson(60)), NotesTree()), "");
}

TEST_F(ExportWorkersTest, WhatAKilledRunHasExportedIsNotExportedTwice) {
  AddNotesInKnownSlices(60);
  run_.SetFaults("[]");
  run_.ChangeFaults("[" + FaultAt(3, kHang) + ", " + FaultAt(22, kHang) + "]");
  CutOff(L"\\parts\\0000092A\\data\\0000092A.dxl");
  EXPECT_EQ(Run({L"verify", out_}).code, 5u);
  FailAt(NotesInParts());
  const ConsoleEnd end = Export({L"--resume", L"--workers", L"2"});
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_FALSE(HasParts());
  EXPECT_EQ(DescribeDifferences(CleanTree(DocumentsJson(60)), NotesTree()), "");
}

TEST_F(ExportWorkersTest, WhatADoneSliceHadLostIsCountedFromTheBegin) {
  AddNotesInKnownSlices(60);
  run_.SetFaults("[]");
  run_.ChangeFaults("[" + FaultAt(4, R"("status": 546)") + ", " + FaultAt(22, kHang) + "]");
  const auto process = StartExport({L"--workers", L"3"});
  EXPECT_TRUE(AwaitCondition(
      [this] { return Holds(ReadIfThere(L"parts\\00000902\\audit.txt"), "Database size after"); }));
  process->EndByForce();
  process->AwaitNothingLeft();
  run_.ChangeFaults("[]");
  const ConsoleEnd end = Export({L"--resume", L"--workers", L"3", L"--json"});
  EXPECT_EQ(end.code, 3u) << end.output;
  const std::vector<Json> progress = EventsOf(end.output, "progress");
  ASSERT_FALSE(progress.empty());
  EXPECT_EQ(progress.back().at("lost"), 1);
}

TEST_F(ExportWorkersTest, ANoteAtWhichWorkersAreCutOffTwiceIsLostAndTheOthersAreNot) {
  AddNotesInKnownSlices(60);
  run_.SetFaults("[]");
  for (const Words& words :
       {Words{L"--json", L"--workers", L"3"}, Words{L"--json", L"--workers", L"2", L"--resume"}}) {
    run_.ChangeFaults("[" + FaultAt(22, kHang) + "]");
    const auto process = StartExport(words);
    // While a folder is taken up nobody may hold its outcome.json.
    process->AwaitOutput(R"("kind":"phase")");
    // The line that the first run left is gone by then. Other workers may have been cut off at
    // notes of their own, which are tried again as well.
    if (words.size() > 3) {
      EXPECT_TRUE(AwaitCondition([this] { return WasTriedAgain(22); }));
    }
    const auto isOpen = [this] {
      return Holds(ReadIfThere(L"parts\\00000952\\unidindex.txt"), NoteText(22) + ",");
    };
    EXPECT_TRUE(AwaitCondition(isOpen));
    process->EndByForce();
    process->AwaitNothingLeft();
  }
  run_.ChangeFaults("[]");
  const ConsoleEnd end = Export({L"--resume", L"--workers", L"3"});
  EXPECT_EQ(end.code, 3u) << end.output;
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 1u);
  EXPECT_EQ(losses[0].at("id"), NoteText(22));
  EXPECT_EQ(FilesIn("data").size(), 59u);
  EXPECT_FALSE(HasParts());
}

// One of them may be the note that ends the machine: the others are not lost with it.
TEST_F(ExportWorkersTest, NotesAtWhichSeveralWorkersWereCutOffAreTriedOneAfterTheOther) {
  AddNotesInKnownSlices(60);
  run_.SetFaults("[]");
  run_.ChangeFaults("[" + FaultAt(3, kHang) + ", " + FaultAt(12, kHang) + ", " +
                    FaultAt(22, kHang) + "]");
  const auto isOpen = [this](const wchar_t* part, int note) {
    return Holds(ReadIfThere(std::wstring(L"parts\\") + part + L"\\unidindex.txt"),
                 NoteText(note) + ",");
  };
  const auto cutOff = [this](const Words& words, const std::function<bool()>& condition) {
    const auto process = StartExport(words);
    process->AwaitOutput(R"("kind":"phase")");
    EXPECT_TRUE(AwaitCondition(condition));
    process->EndByForce();
    process->AwaitNothingLeft();
  };
  cutOff({L"--workers", L"3", L"--json"}, [&] {
    return isOpen(L"00000902", 3) && isOpen(L"0000092A", 12) && isOpen(L"00000952", 22);
  });
  cutOff({L"--workers", L"3", L"--json", L"--resume"},
         [&] { return WasTriedAgain(3) && isOpen(L"00000902", 3); });
  EXPECT_FALSE(WasTriedAgain(12));
  EXPECT_FALSE(WasTriedAgain(22));
  run_.ChangeFaults("[]");
  const ConsoleEnd end = Export({L"--resume", L"--workers", L"3", L"--json"});
  EXPECT_EQ(end.code, 3u) << end.output;
  EXPECT_TRUE(WasTriedAgain(12) && WasTriedAgain(22));
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 1u);
  EXPECT_EQ(losses[0].at("id"), NoteText(3));
  EXPECT_EQ(EventsOf(end.output, "lost").size(), 1u);
  EXPECT_EQ(FilesIn("data").size(), 59u);
}

TEST_F(ExportWorkersTest, PartsOfAnotherListAreNotTaken) {
  AddNotesInKnownSlices(60);
  run_.SetFaults("[]");
  run_.ChangeFaults("[" + FaultAt(3, kHang) + "]");
  CutOff(L"\\parts\\0000092A\\data\\0000092A.dxl");
  run_.ChangeFaults("[]");
  const std::string part = ReadBytes(out_ + L"\\parts\\0000092A\\idtable.txt");
  WriteBytes(out_ + L"\\parts\\0000092A\\idtable.txt", part.substr(0, 10) + part.substr(20));
  const ConsoleEnd end = Export({L"--resume", L"--json"});
  EXPECT_EQ(end.code, 5u) << end.output;
  EXPECT_TRUE(Holds(Log(), "is no part of idtable.txt"));
  ASSERT_EQ(ErrorsIn(end.output).size(), 1u);
  EXPECT_TRUE(Holds(ErrorsIn(end.output)[0], "is no part of idtable.txt"));
  EXPECT_FALSE(NotesInParts().empty());
}

TEST_F(ExportWorkersTest, APartThatCannotBeMadeEndsTheRun) {
  AddNotesInKnownSlices(60);
  const auto process = StartExport({L"--workers", L"3", L"--json"});
  AwaitFile(out_ + L"\\db.dxl");
  WriteBytes(out_ + L"\\parts", "no folder");
  const ConsoleEnd end = process->WaitForEnd();
  // No note was begun.
  EXPECT_EQ(end.code, 2u) << end.output;
  EXPECT_TRUE(Holds(Log(), "Unable to make '"));
  ASSERT_EQ(ErrorsIn(end.output).size(), 1u);
  EXPECT_TRUE(Holds(ErrorsIn(end.output)[0], "Unable to make '"));
  EXPECT_EQ(ReadBytes(out_ + L"\\parts"), "no folder");
}

TEST_F(ExportWorkersTest, NoFileIsReplacedWhereThePartsAreJoined) {
  AddNotesInKnownSlices(60, {WaitNearTheEnd()});
  const std::string last = NoteText(59);
  const std::wstring file = out_ + L"\\data\\" + std::wstring(last.begin(), last.end()) + L".dxl";
  const auto process = StartExport({L"--workers", L"3", L"--json"});
  AwaitFile(out_ + L"\\parts\\00000952\\idtable.txt");
  WriteBytes(file, "somebody's");
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 5u) << end.output;
  const std::string blocked = WideToUtf8(out_) + "\\joined\\000009DA\\data\\" + last + ".dxl";
  const std::vector<std::string> errors = {"Unable to join what several workers have exported: " +
                                           blocked};
  EXPECT_EQ(ErrorsIn(end.output), errors);
  EXPECT_TRUE(Holds(Log(), errors[0]));
  EXPECT_EQ(ReadBytes(file), "somebody's");
  std::filesystem::remove(file);
  EXPECT_EQ(Export({L"--resume"}).code, 0u);
  EXPECT_EQ(FilesIn("data").size(), 60u);
  EXPECT_FALSE(Exists(out_ + L"\\joined"));
}

TEST_F(ExportWorkersTest, ADamagedListEndsWhatHasParts) {
  AddNotesInKnownSlices(60);
  run_.SetFaults("[]");
  run_.ChangeFaults("[" + FaultAt(3, kHang) + "]");
  CutOff(L"\\parts\\0000092A\\data\\0000092A.dxl");
  run_.ChangeFaults("[]");
  WriteBytes(out_ + L"\\idtable.txt", "00000902\r\n0000");
  const OutputTree before = testing::ReadOutputTree(out_);
  EXPECT_EQ(Export({L"--resume"}).code, 2u);
  EXPECT_EQ(DescribeDifferences(before, testing::ReadOutputTree(out_)), "");
}

TEST_F(ExportWorkersTest, APlainExportIsNotTakenUpByWorkers) {
  run_.AddDatabase(database_, R"({"faults": [{"entry": "DXLExportNote", "note": "00000206",
                                              "action": "hang"}],
                                  "notes": [{"id": "00000202", "class": "form"},
                                            {"id": "00000206", "class": "form"}]})");
  const auto process = StartExport({L"--design-only"});
  AwaitFile(out_ + L"\\00000202.dxl");
  process->EndByForce();
  process->AwaitNothingLeft();
  const OutputTree before = testing::ReadOutputTree(out_);
  const ConsoleEnd end = Run({L"export", L"--resume", L"--out", out_, L"--workers", L"3"});
  EXPECT_EQ(end.code, 1u) << end.errors;
  EXPECT_EQ(DescribeDifferences(before, testing::ReadOutputTree(out_)), "");
}

TEST_F(ExportWorkersTest, ADesignThatFailsEndsTheRunAtItsNote) {
  AddNotes(60, {FaultAt(20, R"("status": 6967)"), R"({"entry": "NSFNoteOpen", "wait": 20})"});
  const ConsoleEnd end = Export({L"--workers", L"3"});
  EXPECT_EQ(end.code, 5u) << end.output;
  EXPECT_EQ(ExportAlone(), 5u);
  EXPECT_EQ(DescribeDifferences(NotesTreeOf(Alone()), NotesUpTo(20)), "");
  // What lies in the parts behind is one finding more.
  const std::string reason = OutcomeOf(Alone()).at("reason");
  EXPECT_TRUE(std::string(Outcome().at("reason")).starts_with(reason.substr(0, reason.rfind(','))));
}

TEST_F(ExportWorkersTest, AStartThatFailsThreeTimesEndsTheRunAndLosesNoNote) {
  const std::string wait = R"("wait": 6000)";
  AddNotesInKnownSlices(60, {FaultAt(1, wait), FaultAt(16, wait)});
  run_.SetFaults("[]");
  const auto process = StartExport({L"--workers", L"2"});
  AwaitFile(out_ + L"\\parts\\00000902\\data\\00000902.dxl");
  AwaitFile(out_ + L"\\parts\\0000093E\\data\\0000093E.dxl");
  run_.ChangeFaults(R"([{"entry": "NotesInitExtended", "status": 422}])");
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 5u) << end.output;
  EXPECT_TRUE(Holds(Outcome().at("reason"), "Maximum retries exceeded")) << end.output;
  EXPECT_EQ(Outcome().at("account").at("losses").size(), 0u);
  run_.ChangeFaults("[]");
  EXPECT_EQ(Export({L"--resume"}).code, 0u);
  EXPECT_EQ(DescribeDifferences(CleanTree(DocumentsJson(60)), NotesTree()), "");
}

TEST_F(ExportWorkersTest, TooManyLossesInARowEndTheRun) {
  std::vector<std::string> faults;
  for (int note = 24; note < 32; ++note) faults.push_back(FaultAt(note, R"("status": 546)"));
  faults.push_back(FaultAt(33, R"("wait": 3000)"));
  AddNotes(60, faults);
  const ConsoleEnd end = Export({L"--workers", L"3", L"--give-up", L"8"});
  EXPECT_EQ(end.code, 5u) << end.output;
  EXPECT_EQ(Outcome().at("stop").at("by"), "give-up");
}

TEST_F(ExportWorkersTest, AListThatBeginsWithTheFirstOfAllIdsIsNotShared) {
  run_.AddDatabase(database_, R"({"notes": [{"id": "00000001"}, {"id": "00000902"}]})");
  const ConsoleEnd end = Export({L"--workers", L"3"});
  EXPECT_EQ(end.code, 0u) << end.output;
  ExpectLikeAlone(end);
}

TEST_F(ExportWorkersTest, AFolderInWhichOnlyOneWorkerHasRoomIsRefused) {
  AddNotes(2);
  // One character more than the longest name of a part's file leaves room for.
  out_ = run_.folder() + L"\\";
  out_ += std::wstring(MAX_PATH - LongestOutputName(true) - 15 - out_.size(), L'x');
  const ConsoleEnd end = Export({L"--workers", L"2"});
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.output, "too long for several workers")) << end.output;
  EXPECT_FALSE(Exists(out_));
  EXPECT_EQ(Export().code, 0u);
  std::filesystem::remove_all(out_);
  out_.pop_back();
  EXPECT_EQ(Export({L"--workers", L"2"}).code, 0u);
}

TEST_F(ExportWorkersTest, APlainExportTakesNoWorkers) {
  AddNotes(2);
  EXPECT_EQ(Export({L"--workers", L"2", L"--design-only"}).code, 1u);
  EXPECT_EQ(Export({L"--workers", L"0"}).code, 1u);
  EXPECT_EQ(Export({L"--workers", L"17"}).code, 1u);
  EXPECT_FALSE(Exists(out_));
}

}  // namespace
}  // namespace larkspan::console
